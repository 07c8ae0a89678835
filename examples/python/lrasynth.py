"""ctypes declarations of everything that liblrasynth.so.1 exports."""

import ctypes
from ctypes import POINTER, Structure, c_char_p, c_float, c_int32, c_int64, c_uint8

_bytes, _ints, _floats = POINTER(c_uint8), POINTER(c_int32), POINTER(c_float)



class Profile(Structure):
    """lrasynth_profile: a chip and its motor."""

    _fields_ = [(name, c_int32) for name in "chip_type sample_rate motor_type boost_flag".split()]


class Pattern(Structure):
    """lrasynth_pattern: a long signal. Keep the array of records as long as the pattern."""

    _fields_ = [("records", _ints)] + [(name, c_int32) for name in "length loop_count interval_ms limit_ms".split()]


_profile, _pattern = POINTER(Profile), POINTER(Pattern)

# Result, arguments, and the functions that have them.
_SIGNATURES = (
    (None, (c_int32,), "setChipType setF0"),
    (c_int32, (), "getMotorType getF0 getBoostFlg getF2"),
    (c_int32, (c_int32,), """setMotorType setBoostFlg getFrequency getFrequency_0832_ShortData
        getFrequency_1040_ShortData getFrequency_9595_ShortData getFrequency_0815_ShortData getCycle getF1
        getShortSignalDataLength getShortSignalDataLength_0832 getShortSignalDataLength_1040
        getShortSignalDataLength_9595 get_custom_wave_len get_wav_len_high_frequency get_custom_wave_len_0832
        get_custom_wave_len_9595"""),
    (c_int32, (c_int32,) * 2, """getFrequency_4096 getFrequency_0832 getFrequency_1040 getFrequency_9595
        getFrequency_081540 getIntensity getIntensity_0832 getIntensity_1040 getIntensity_9595 getA1 getA2"""),
    (c_int32, (c_int32, c_float), "get_sine_wave_len"),
    (c_int32, (c_int32,) * 3 + (c_float,), "get_wave_func_wave_len"),
    (c_int32, (c_int32,) * 3 + (c_float,) * 4, "get_wave_func_wave_len_custom"),
    (c_float, (), "getC1 getC2"),
    (c_float, (c_float,), "wave_transform wave_reverse"),
    (c_float, (c_int32,), """custom_wave_transform getIntensityMax getIntensityMax_0832 getIntensityMax_1040
        getIntensityMax_9595 getC0 getZeroTime"""),
    (c_float, (c_int32,) * 3, "getFrequencyStepValue"),
    (c_int32, (c_int32, c_int32, _bytes), """getShortSignalData getShortSignalData_0832 getShortSignalData_1040
        getShortSignalData_9595 shortWave_func shortWave_func_custom shortWave_func_custom_0832
        shortWave_func_custom_9595"""),
    (c_int32, (c_int32,) * 6 + (_ints, c_float), "wave_func"),
    (c_int32, (c_int32,) * 7 + (_ints,) + (c_float,) * 4, "wave_func_custom"),
    (c_int32, (_bytes, c_int32, _ints), "transStringDataToInt"),
    (c_int32, (c_int32, c_int32, _ints, c_int32), "getLongSignalDataLength getLongSignalBufferLength"),
    (c_int32, (c_int32, c_int32, _ints, _bytes, c_int32, c_int32), "getLongSignalData"),
    (c_int32, (_ints, _bytes, c_int32), "get_4096_wave"),
    (c_int32, (c_int32,) * 3 + (_bytes,), "get_4097_wave sine"),
    (c_int32, (c_int32, c_int32, _floats, c_float), "get_sine"),
    (c_int32, (c_int32, _floats, c_float, c_float), "getIncreasingStepIntensity"),
    (c_int32, (), "lrasynth_version"),
    (c_char_p, (c_int64,), "lrasynth_error_text"),
    (Profile, (c_int32,) * 3, "lrasynth_profile_of"),
    (c_int64, (_profile, c_int32), "lrasynth_tap_length"),
    (c_int64, (_profile, c_int32, c_int32, c_int64, _bytes, c_int64), "lrasynth_tap_read"),
    (c_int64, (_profile, _pattern), "lrasynth_pattern_length"),
    (c_int64, (_profile, _pattern, c_int64, _bytes, c_int64), "lrasynth_pattern_read"),
    (c_int32, (_profile, _pattern, _ints), "lrasynth_pattern_check"),
)

FUNCTIONS = {name: (result, arguments) for result, arguments, names in _SIGNATURES for name in names.split()}

DATA = {
    **dict.fromkeys("IC_TYPE SAMPLE_RATE giMotorType giBoostFlg F0".split(), c_int32),
    "wave_custom_2p5T": c_uint8 * 576,
    "wave_custom_1T": c_uint8 * 208,
    "wave_custom_2T": c_uint8 * 540,
    "wave_custom_1p5T": c_uint8 * 312,
    **{f"wave_custom_T{level:02}": c_uint8 * (804 if level == 10 else 824) for level in range(5, 101, 5)},
}


def load(path="liblrasynth.so.1"):
    """The library, its functions ready to be called."""
    library = ctypes.CDLL(path)
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes = result, arguments
    return library


def data(library, name):
    """A variable (read and write its .value) or a table of the library. Tables are constant: read them only."""
    return DATA[name].in_dll(library, name)
