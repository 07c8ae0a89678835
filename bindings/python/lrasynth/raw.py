# SPDX-License-Identifier: Apache-2.0
"""ctypes declarations of everything that liblrasynth.so.1 exports."""

from __future__ import annotations

import ctypes
import pathlib
from ctypes import POINTER, Structure, c_char_p, c_float, c_int32, c_int64, c_uint8
from typing import Any

_bytes, _ints, _floats = POINTER(c_uint8), POINTER(c_int32), POINTER(c_float)


class Profile(Structure):
    """lrasynth_profile: a chip and its motor."""

    _fields_ = [(name, c_int32) for name in "chip_type sample_rate motor_type boost_flag".split()]


class Pattern(Structure):
    """lrasynth_pattern: a long signal. Keep the array of records as long as the pattern."""

    _fields_ = [("records", _ints)] + [(name, c_int32) for name in "length loop_count interval_ms limit_ms".split()]


class Segment(Structure):
    """A piece of a tap: its frequency in Hz, 0 where it is silent, and its length in samples."""

    _fields_ = [("frequency_hz", c_int32), ("length", c_int32)]


class Point(Structure):
    """lrasynth_point: one of the four of a continuous vibration."""

    _fields_ = [(name, c_int32) for name in "ms intensity offset".split()]


_profile, _pattern, _segments = POINTER(Profile), POINTER(Pattern), POINTER(Segment)

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
    (c_int32, (c_int32,), "lrasynth_motor lrasynth_chip"),
    (c_int32, (_profile,), "lrasynth_resonance_hz lrasynth_has_boost lrasynth_has_shares"),
    (c_int32, (_profile, c_int32), "lrasynth_offset_hz"),
    (c_float, (_profile, c_int32), "lrasynth_offset_gain"),
    (c_int32, (_profile, c_int32, c_int32), "lrasynth_tap_driven"),
    (c_int32, (_profile, c_int32, _segments), "lrasynth_tap_segments"),
    (c_int64, (_profile, c_int32, c_int32), "lrasynth_tone_length"),
    (c_int64, (_profile,) + (c_int32,) * 3 + (c_int64, _bytes, c_int64), "lrasynth_tone_read"),
    (None, (_ints,) + (c_int32,) * 3, "lrasynth_put_transient"),
    (None, (_ints, c_int32, c_int32, POINTER(Point)), "lrasynth_put_continuous"),
)

FUNCTIONS = {name: (result, arguments) for result, arguments, names in _SIGNATURES for name in names.split()}

# What each function does, in a line; lrasynth.h says the rest.
_SUMMARIES = """
setChipType                     Store the chip type and set SAMPLE_RATE.
setMotorType                    Store the motor model.
getMotorType                    The motor model.
setF0                           Store a resonant frequency in Hz.
getF0                           Store and return the motor's resonant frequency in Hz.
setBoostFlg                     Store 1 - flag.
getBoostFlg                     The boost flag as stored.
wave_transform                  Code an offset value.
custom_wave_transform           Code a whole offset value.
wave_reverse                    Mirror an offset value about rest.
getFrequency                    Drive frequency in Hz of a level.
getFrequency_0832_ShortData     Drive frequency in Hz of a level, motor 832.
getFrequency_1040_ShortData     Drive frequency in Hz of a level, motor 1040.
getFrequency_9595_ShortData     Drive frequency in Hz of a level, motor 9595.
getFrequency_0815_ShortData     Drive frequency in Hz of a level, motor 81540.
getFrequency_4096               Frequency in Hz at an offset around a base.
getFrequency_0832               Frequency in Hz at an offset around a base, motor 832.
getFrequency_1040               Frequency in Hz at an offset around a base, motor 1040.
getFrequency_9595               Frequency in Hz at an offset around a base, motor 9595.
getFrequency_081540             Frequency in Hz at an offset around a base, motor 81540.
getFrequencyStepValue           Hertz per step from one frequency to another.
getIntensity                    Intensity of a tap inside a pattern.
getIntensity_0832               Intensity of a tap inside a pattern, motor 832.
getIntensity_1040               Intensity of a tap inside a pattern, motor 1040.
getIntensity_9595               Intensity of a tap inside a pattern, motor 9595.
getIntensityMax                 Gain of continuous vibration at an offset.
getIntensityMax_0832            Gain of continuous vibration at an offset, motor 832.
getIntensityMax_1040            Gain of continuous vibration at an offset, motor 1040.
getIntensityMax_9595            Gain of continuous vibration at an offset, motor 9595.
getCycle                        Cycle count of a level.
getShortSignalDataLength        Length of a tap in bytes.
getShortSignalData              Write a tap.
getShortSignalDataLength_1040   Length of a tap in bytes, routed as for motor 1040.
getShortSignalData_1040         Write a tap, routed as for motor 1040.
getShortSignalDataLength_0832   Length of a tap in bytes, motor 832.
getShortSignalDataLength_9595   Length of a tap in bytes, motor 9595.
getShortSignalData_0832         Write a tap, motor 832.
getShortSignalData_9595         Write a tap, motor 9595.
getC0                           Drive cycles of a level.
getC1                           F1 cycles of the edge-level shape.
getC2                           F2 cycles of the edge-level shape.
getF1                           F1 in Hz of a level.
getF2                           F2 in Hz.
getZeroTime                     Zero time in ms of a level.
getA1                           F1 amplitude in percent.
getA2                           F2 amplitude in percent.
get_sine_wave_len               Samples of that many cycles at a frequency.
get_wave_func_wave_len          Samples that wave_func writes at most.
get_wave_func_wave_len_custom   Samples that wave_func_custom writes at most.
get_custom_wave_len             Samples of a level's mid-level shape.
get_wav_len_high_frequency      Samples of a level's edge-level shape.
shortWave_func                  Write the mid-level tap.
wave_func                       Render a mid-level transient as integers.
shortWave_func_custom           Write the edge-level tap.
wave_func_custom                Render a general transient as integers.
get_custom_wave_len_0832        Bytes of a stored burst of motor 832.
get_custom_wave_len_9595        Bytes of a stored burst of motor 9595.
shortWave_func_custom_0832      Write a stored burst of motor 832.
shortWave_func_custom_9595      Write a stored burst of motor 9595.
transStringDataToInt            Widen bytes to integers.
getLongSignalDataLength         Length in bytes of one pass of a pattern, or of its event stream.
getLongSignalBufferLength       Bytes that a buffer for a pattern needs.
getLongSignalData               Render a pattern.
get_4096_wave                   Draw one continuous vibration.
get_4097_wave                   Draw one transient at its start.
sine                            Render a sine burst as sample codes.
get_sine                        Render a sine burst as offset values.
getIncreasingStepIntensity      Render envelope values along a quarter sine.
lrasynth_version                Version of the library at run time.
lrasynth_error_text             Text for a negative result.
lrasynth_profile_of             A profile from chip type, motor model and boost.
lrasynth_tap_length             Length of a tap in samples.
lrasynth_tap_read               Read a window of a tap.
lrasynth_pattern_length         Length of a pattern in samples.
lrasynth_pattern_read           Read a window of a pattern.
lrasynth_pattern_check          Find the faults of a pattern.
lrasynth_motor                  The known motor models, by index.
lrasynth_chip                   The known chip types, by index.
lrasynth_resonance_hz           Resonant frequency of the motor.
lrasynth_has_boost              Whether the boost flag makes a difference.
lrasynth_has_shares             Whether taps inside a pattern are weaker.
lrasynth_offset_hz              Frequency of a continuous vibration at an offset.
lrasynth_offset_gain            Its gain there.
lrasynth_tap_driven             Intensity at which a tap is driven inside a pattern.
lrasynth_tap_segments           The segments of a tap.
lrasynth_tone_length            Length of a sine burst in samples.
lrasynth_tone_read              Read a window of a sine burst.
lrasynth_put_transient          Fill a record with a tap.
lrasynth_put_continuous         Fill a record with a continuous vibration.
"""
SUMMARIES = dict(line.split(maxsplit=1) for line in _SUMMARIES.strip().splitlines())

DATA: dict[str, Any] = {
    **dict.fromkeys("IC_TYPE SAMPLE_RATE giMotorType giBoostFlg F0".split(), c_int32),
    "wave_custom_2p5T": c_uint8 * 576,
    "wave_custom_1T": c_uint8 * 208,
    "wave_custom_2T": c_uint8 * 540,
    "wave_custom_1p5T": c_uint8 * 312,
    **{f"wave_custom_T{level:02}": c_uint8 * (804 if level == 10 else 824) for level in range(5, 101, 5)},
}


NAME = "liblrasynth.so.1"


def load(path: str | None = None) -> Any:
    """The library, its functions ready to be called: the one beside this module where there is one, as in a wheel, or
    else the one that the system finds."""
    beside = pathlib.Path(__file__).with_name(NAME)
    library = ctypes.CDLL(path or (str(beside) if beside.exists() else NAME))
    for name, (result, arguments) in FUNCTIONS.items():
        function = getattr(library, name)
        function.restype, function.argtypes, function.__doc__ = result, arguments, SUMMARIES[name]
    return library


def data(library: Any, name: str) -> Any:
    """A variable (read and write its .value) or a table of the library. Tables are constant: read them only."""
    return DATA[name].in_dll(library, name)
