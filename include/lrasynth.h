/* SPDX-License-Identifier: Apache-2.0 */
/** @mainpage lrasynth: drive waveforms for linear resonant actuators (LRAs)
 *
 * A host describes chip and motor once, asks for the length of a waveform, allocates that many bytes and has the
 * waveform written into them. Everything is plain C; no call allocates, keeps, prints or throws anything, and the
 * same call gives the same bytes on every platform.
 *
 *     setChipType(0);                                   // 24000 samples a second
 *     setMotorType(1040);
 *     int32_t length = getShortSignalDataLength(50);    // one tap, level 50
 *     uint8_t *tap = malloc(length);
 *     getShortSignalData(50, 80, tap);                  // at 80 % intensity
 *
 * Hosts with more than one motor, with small buffers, or that cannot afford an overrun take the functions of
 * "Profile in hand, any window" instead: they have the profile as an argument and read any window of a waveform, of any
 * length, into a buffer whose size they are told. The bytes are the same.
 *
 * ## Terms
 *   - Sample code: one output byte, a two's-complement amplitude: 0 is rest, 1..127 push one way, 255 (weakest) down to
 *     128 (strongest) the other way. Sine waveforms start with 0 and code later rest as 255.
 *   - Offset value: the float 128 + amplitude from which a sample code is made; 128 is rest.
 *   - Level: 0..100, the character of a tap: it selects frequency and shape. 50 is the motor's resonance.
 *   - Intensity: strength in percent, nominally 0..100, never clamped. For a tap, of full scale. Continuous vibration
 *     is also weighed by its frequency offset (getIntensityMax): 100 at offset 0 on motor 1040 peaks at 33 of 127.
 *   - Frequency offset: a shift around the motor's base frequency for continuous vibration, effective range -50..50.
 *
 * ## Promises
 *   - Total: every argument has a defined outcome. Conversions from floating point to integers saturate, NaN becomes
 *     0; integer arithmetic documented as 32-bit wraps, all other is computed without overflow. Buffers are written up
 *     to the extent that the matching length function reports under the same profile and never beyond; nothing is
 *     written where that is 0 or less. A null pointer is refused with status -1 (a length: 0) where at least one
 *     element would be read or written, and ignored where not.
 *   - Buffers belong to the caller, are not kept, and must not overlap one another. Sizes are element counts.
 *   - No heap, less than 16 KiB of stack whatever the request: 4.5 KiB at most, as measured of GCC's and Clang's code
 *     for x86-64 and GCC's for arm64. A first call takes no more than any other, but meets pages of the library and of
 *     libm that are not in memory yet: a host with deadlines locks its memory (mlockall), or calls once before they
 *     begin.
 *   - The floating-point environment must be the default one (round to nearest, subnormals kept). Calls leave it so;
 *     like any arithmetic they may raise exception flags.
 *   - Threads: calls may run at once as long as nobody changes the profile meanwhile.
 */
/** @file
 * Drive waveforms for linear resonant actuators. */
#ifndef LRASYNTH_H
#define LRASYNTH_H

#include <stdint.h>

/** Version of this header. The ABI follows the major number, which is also the library's SONAME (semantic versioning).
 * In the shared library the facts of chips and motors and the builders of records have the symbol version LRASYNTH_1.2,
 * the other functions that begin with lrasynth_ LRASYNTH_1.1, all other names LRASYNTH_1: dlvsym(library, "sine",
 * "LRASYNTH_1"), where a host wants this meaning of a name or none.
 * @{ */
#define LRASYNTH_VERSION_MAJOR 1
#define LRASYNTH_VERSION_MINOR 2
#define LRASYNTH_VERSION_PATCH 0
#define LRASYNTH_VERSION (LRASYNTH_VERSION_MAJOR * 10000 + LRASYNTH_VERSION_MINOR * 100 + LRASYNTH_VERSION_PATCH)
/** @} */

/** Motor models.
 * @{ */
#define LRASYNTH_MOTOR_832 832
#define LRASYNTH_MOTOR_1040 1040
#define LRASYNTH_MOTOR_9595 9595
#define LRASYNTH_MOTOR_81540 81540 /**< Has no taps. */
/** @} */

/** Chip types. Every other one behaves like 0: samples, 24000 a second.
 * @{ */
#define LRASYNTH_CHIP_HALF_RATE 1     /**< 12000 samples a second. */
#define LRASYNTH_CHIP_EVENT_STREAM 11 /**< Long signals as a compact stream of events. */
/** @} */

/** Events of a long signal and the integers of a record.
 * @{ */
#define LRASYNTH_CONTINUOUS 4096 /**< Type of a continuous vibration. */
#define LRASYNTH_TRANSIENT 4097  /**< Type of a tap. */
#define LRASYNTH_RECORD_LENGTH 17
/** @} */

/** The largest limitMs of getLongSignalData that does not wrap at 24000 samples a second. */
#define LRASYNTH_NO_LIMIT_MS 89478

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

#ifndef LRASYNTH_NO_BARE_NAMES /* for hosts that have names like sine or F0 themselves */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup profile Device profile
 * Process-wide settings that every other call reads. Set them before the first request and do not change them between a
 * length call and its data call, nor while another thread renders.
 *
 * The variables may be read and written directly; any value is safe. What a host has as a global of one of these names,
 * of whatever type, the dynamic linker takes for the library's variable: make it static or hidden. The functions that
 * begin with lrasynth_ neither read nor write them.
 * @{ */

extern int32_t IC_TYPE;     /**< Chip type, 0 at load. */
extern int32_t SAMPLE_RATE; /**< Samples per second, 24000 at load. */
extern int32_t giMotorType; /**< Motor model, 1040 at load; unknown ones fall back as documented. */
extern int32_t giBoostFlg;  /**< Boost flag as stored, 1 at load: 1 is boost, 0 is none. */
extern int32_t F0; /**< Resonant frequency last derived or set, in Hz, 170 at load. Nothing computes with it. */

/** Stores the chip type; sets SAMPLE_RATE to 12000 for LRASYNTH_CHIP_HALF_RATE and to 24000 for every other. */
void setChipType(int32_t chipType);

/** Stores the motor model unchecked. Returns 0. */
int32_t setMotorType(int32_t motorType);

/** Returns the motor model as stored. */
int32_t getMotorType(void);

/** Stores a frequency in Hz in F0, where it stays until getF0 or a continuous vibration overwrites it. */
void setF0(int32_t frequencyHz);

/** Returns the motor model's resonant frequency in Hz and stores it in F0: 235 for 832, 130 for 81540, else 170. */
int32_t getF0(void);

/** Stores 1 - flag (32-bit): an argument of 0 switches boost on, 1 switches it off. Returns 0. */
int32_t setBoostFlg(int32_t flag);

/** Returns the boost flag as stored, that is 1 minus the last argument of setBoostFlg. */
int32_t getBoostFlg(void);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup codes Sample codes
 * From offset values to coded values. A coded value becomes a byte by truncation toward zero, of which the low 8 bits
 * are kept.
 * @{ */

/** Codes an offset value v: v - 127 if v > 128, else v + 127. Rest (128) gives 255, 128.5 gives 1.5. */
float wave_transform(float offsetValue);

/** The same coding for an offset value already truncated to an integer: 128 gives 255, 129 gives 2. */
float custom_wave_transform(int32_t offsetValue);

/** Mirrors an offset value about rest: 256 - v. */
float wave_reverse(float offsetValue);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup frequency Frequency curves
 * Level or frequency offset to whole hertz, piecewise linear and tuned per motor model. The results are truncated
 * toward zero and saturate.
 * @{ */

/** Drive frequency in Hz of a level, clamped to 0..100, for the profile's motor; for an unknown motor the clamped level
 * itself. */
int32_t getFrequency(int32_t level);

/** Each motor model's level curve, whatever the profile says; the level is not clamped. It counts from 50 on, 32-bit,
 * so that levels below INT32_MIN + 50 wrap to the curve's other end.
 * @{ */
int32_t getFrequency_0832_ShortData(int32_t level);
int32_t getFrequency_1040_ShortData(int32_t level);
int32_t getFrequency_9595_ShortData(int32_t level);
int32_t getFrequency_0815_ShortData(int32_t level); /* motor 81540 */
/** @} */

/** Frequency in Hz at a frequency offset, clamped to -50..50, around a base frequency in Hz, for the profile's motor;
 * for an unknown motor the base itself. */
int32_t getFrequency_4096(int32_t baseHz, int32_t offset);

/** Each motor model's offset curve, whatever the profile's motor; the offset is not clamped. Motor 832 takes its wide
 * curve when giBoostFlg is 1 and its narrow one otherwise. At offset 0 the base comes back as it is.
 * @{ */
int32_t getFrequency_0832(int32_t baseHz, int32_t offset);
int32_t getFrequency_1040(int32_t baseHz, int32_t offset);
int32_t getFrequency_9595(int32_t baseHz, int32_t offset);
int32_t getFrequency_081540(int32_t baseHz, int32_t offset);
/** @} */

/** Hertz per step when going from one frequency to another in stepCount equal steps: (to - from) / count in single
 * precision; 0 when the frequencies are equal or the count is 0. */
float getFrequencyStepValue(int32_t fromHz, int32_t toHz, int32_t stepCount);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup intensity Intensity curves
 * @{ */

/** Intensity in percent at which a tap of this level is driven inside a long signal (sample output): on motor 1040 the
 * level band's share of it (a tenth for the lowest levels, all of it above 70), on every other motor the intensity
 * unchanged. */
int32_t getIntensity(int32_t level, int32_t intensity);

/** The same for a fixed motor model; 832 and 9595 return the intensity unchanged.
 * @{ */
int32_t getIntensity_0832(int32_t level, int32_t intensity);
int32_t getIntensity_1040(int32_t level, int32_t intensity);
int32_t getIntensity_9595(int32_t level, int32_t intensity);
/** @} */

/** Gain of continuous vibration at a frequency offset, clamped to -50..50: offset * offset / divisor + floor, which
 * makes up for the motor's weaker response away from resonance. Motor 832 uses its boost constants when giBoostFlg is
 * not 0; every motor but 832 and 9595 uses the constants of 1040.
 * @{ */
float getIntensityMax(int32_t offset);
float getIntensityMax_0832(int32_t offset);
float getIntensityMax_1040(int32_t offset);
float getIntensityMax_9595(int32_t offset);
/** @} */

/** Cycle count of a level: 3 up to 24, 2 for 25..70, 4 above. */
int32_t getCycle(int32_t level);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup short Short signals
 * One tap, chosen by a level and scaled by an intensity.
 * @{ */

/** Length of the tap in bytes (one per sample); 0 where the motor model has no taps (81540 and unknown ones) or, on
 * motors 832 and 9595, no tap for this level (below 0 or above 100). */
int32_t getShortSignalDataLength(int32_t level);

/** Writes the tap: exactly getShortSignalDataLength(level) bytes from out on. Returns 0, also where the length is 0 on
 * a motor model with taps; -1, nothing written, for a model without taps or a null out.
 *
 * On motor 1040 an intensity of 100 can code single samples at the positive peak as 128, which a driver reads as -128;
 * 99 never does. Inside a pattern (sample output) a tap plays at its level band's share of the intensity: see
 * getIntensity. */
int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t *out);

/** The same with the routing of motor 1040; frequencies still follow the profile's motor. Data returns 0, or -1 for a
 * null out.
 * @{ */
int32_t getShortSignalDataLength_1040(int32_t level);
int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t *out);
/** @} */

/** The same for the table motors, whatever the profile says. Data returns 0, also where the level has no tap; -1 for a
 * null out.
 * @{ */
int32_t getShortSignalDataLength_0832(int32_t level);
int32_t getShortSignalDataLength_9595(int32_t level);
int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t *out);
int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t *out);
/** @} */
/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup timing Transient timing of motor 1040
 * A tap is a drive segment at the level's frequency, a zero time of rest, an F1 and an F2 segment. Levels 25..70 have
 * the mid-level shape (1, 1/2 and 1/2 cycles), all others the edge-level shape (getC0, 1 and 1/2 cycles; F1 and F2
 * silent).
 *
 * Lengths are sample counts at SAMPLE_RATE: plain arithmetic, whose result is negative where cycles, frequencies or
 * times are. A segment at frequency 0 counts as 0; a transient without a positive drive frequency has length 0.
 * @{ */

float getC0(int32_t level);                      /**< Drive cycles: 2 above level 70, 1.5 below 25, else 1. */
float getC1(void);                               /**< F1 cycles of the edge-level shape: 1. */
float getC2(void);                               /**< F2 cycles of the edge-level shape: 0.5. */
int32_t getF1(int32_t level);                    /**< F1 in Hz: 200 at level 0, else 300. */
int32_t getF2(void);                             /**< F2 in Hz: 100. */
float getZeroTime(int32_t level);                /**< Zero time in ms: 2.5 to 4.2. */
int32_t getA1(int32_t level, int32_t intensity); /**< F1 amplitude in percent; 0 outside levels 25..70. */
int32_t getA2(int32_t level, int32_t intensity); /**< F2 amplitude in percent; 0 outside levels 25..70. */

/** Samples of that many cycles at a frequency in Hz. */
int32_t get_sine_wave_len(int32_t frequencyHz, float cycles);

/** Samples of a mid-level shape with the given F1 and F2 (Hz) and zero time (ms). Sizes wave_func's output. */
int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs);

/** Samples of a transient whose segments have the given cycles. Sizes wave_func_custom's output when its drive
 * frequency is getFrequency(level). */
int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2,
                                      float zeroTimeMs);

/** Samples of the level's mid-level shape. */
int32_t get_custom_wave_len(int32_t level);

/** Samples of the level's edge-level shape. */
int32_t get_wav_len_high_frequency(int32_t level);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup synthesisers Transient synthesisers of motor 1040
 * Usable at any level.
 * @{ */

/** Writes the mid-level tap, get_custom_wave_len(level) bytes. Returns 0, or -1 for a null out. */
int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t *out);

/** Renders a mid-level transient as one coded sample per integer; intensity and amplitudes in percent of 255, F2
 * mirrored. Writes the sum of the four truncated segment counts (those above 0), at most
 * get_wave_func_wave_len(level, f1Hz, f2Hz, zeroTimeMs) integers. Returns 0, or -1 for a null out. */
int32_t wave_func(int32_t level, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t *out,
                  float zeroTimeMs);

/** Writes the edge-level tap, get_wav_len_high_frequency(level) bytes. Returns 0, or -1 for a null out. */
int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t *out);

/** Renders a general transient from its drive frequency (Hz), cycle counts and amplitudes (percent of 255) as one coded
 * sample per integer. F2 is mirrored when reverse is exactly 1. Writes the sum of the four truncated segment counts
 * (those above 0), at most what get_wave_func_wave_len_custom gives for the same values. Returns 0, or -1 for a null
 * out. */
int32_t wave_func_custom(int32_t frequencyHz, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2,
                         int32_t reverse, int32_t *out, float c0, float c1, float c2, float zeroTimeMs);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup tables Table transients of motors 832 and 9595
 * Stored bursts, replayed at the intensity whatever SAMPLE_RATE holds: at 12000 they keep their sample count and so
 * last twice as long.
 *
 * A burst is a row of lobes (half-waves), which push one way and the other, and rest after the last one. On motor 832 a
 * lobe has 52 samples; after the slash stand the lobes that brake, the first of them with the sign of the last that
 * drives. On motor 9595 a burst starts late and rises slowly, and lobes get shorter as the level rises. Peaks are
 * signed sample values as stored; "last" is the index of the last sample that is not 0.
 * @verbatim
 *   name              levels   bytes last  peaks of the lobes
 *   wave_custom_2p5T  0..25    576   571   +127 -127 +127 -127 +127 / +127 -127 +74 -75 +51 -52
 *   wave_custom_1T    26..50   208   207   +127 -127 / -117 +117
 *   wave_custom_2T    51..75   540   467   +127 -127 +127 -127 / -127 +127 -71 +71 -32
 *   wave_custom_1p5T  76..100  312   311   +127 -127 +127 / +112 -113 +112
 *   wave_custom_T05   0..5     824   823   +67 -127 +121 -44 (then +-1..2)
 *   wave_custom_T10   6..10    804   712   +68 -127 +120 -43 (then +-1..2)
 *   wave_custom_T15   11..15   824   659   +69 -127 +118 -42 (then +-1..2)
 *   wave_custom_T20   16..20   824   599   +71 -127 +117 -42 (then +-1..3)
 *   wave_custom_T25   21..25   824   549   +76 -127 +115 -43
 *   wave_custom_T30   26..30   824   506   +86 -127 +111 -56
 *   wave_custom_T35   31..35   824   470   +104 -127 +40 -3 +108 -74
 *   wave_custom_T40   36..40   824   439   +120 -127 +55 -25 +109 -92
 *   wave_custom_T45   41..45   824   411   +125 -127 +70 -51 +118 -102
 *   wave_custom_T50   46..50   824   387   +127 -127 +87 -78 +127 -108
 *   wave_custom_T55   51..55   824   356   +117 -118 +105 -109 +127 -106
 *   wave_custom_T60   56..60   824   329   +101 -107 +117 -127 +120 -97
 *   wave_custom_T65   61..65   824   306   +82 -92 +116 -127 +105 -82
 *   wave_custom_T70   66..70   824   286   +70 -84 +116 -127 +96 -73
 *   wave_custom_T75   71..75   824   268   +62 -79 +117 -127 +90 -66
 *   wave_custom_T80   76..80   824   253   +56 -77 +118 -127 +86 -61
 *   wave_custom_T85   81..85   824   239   +51 -75 +118 -127 +83 -58
 *   wave_custom_T90   86..90   824   226   +48 -74 +119 -127 +81 -55
 *   wave_custom_T95   91..95   824   215   +46 -73 +119 -127 +79 -53
 *   wave_custom_T100  96..100  824   206   +44 -72 +119 -127 +78 -51
 * @endverbatim
 * @{ */

/** Length in bytes of the burst for a level; 0 below level 0 and above 100.
 * @{ */
int32_t get_custom_wave_len_0832(int32_t level);
int32_t get_custom_wave_len_9595(int32_t level);
/** @} */

/** Writes the burst for a level, exactly that length. Returns 0; -1, nothing written, for a level without a burst or a
 * null out.
 * @{ */
int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t *out);
int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t *out);
/** @} */

/** Widens count bytes to integers 0..255; a count below 1 copies nothing. Returns 0, or -1 for a null pointer. */
int32_t transStringDataToInt(const uint8_t *source, int32_t count, int32_t *destination);

/** The stored bursts of motor 832 as sample codes, by drive periods: 2.5T for levels 0..25, 1T to 50, 2T to 75, 1p5T to
 * 100.
 * @{ */
extern const uint8_t wave_custom_2p5T[576];
extern const uint8_t wave_custom_1T[208];
extern const uint8_t wave_custom_2T[540];
extern const uint8_t wave_custom_1p5T[312];
/** @} */

/** The stored bursts of motor 9595 as sample codes, by the highest level of the band of five.
 * @{ */
extern const uint8_t wave_custom_T05[824];
extern const uint8_t wave_custom_T10[804];
extern const uint8_t wave_custom_T15[824];
extern const uint8_t wave_custom_T20[824];
extern const uint8_t wave_custom_T25[824];
extern const uint8_t wave_custom_T30[824];
extern const uint8_t wave_custom_T35[824];
extern const uint8_t wave_custom_T40[824];
extern const uint8_t wave_custom_T45[824];
extern const uint8_t wave_custom_T50[824];
extern const uint8_t wave_custom_T55[824];
extern const uint8_t wave_custom_T60[824];
extern const uint8_t wave_custom_T65[824];
extern const uint8_t wave_custom_T70[824];
extern const uint8_t wave_custom_T75[824];
extern const uint8_t wave_custom_T80[824];
extern const uint8_t wave_custom_T85[824];
extern const uint8_t wave_custom_T90[824];
extern const uint8_t wave_custom_T95[824];
extern const uint8_t wave_custom_T100[824];
/** @} */
/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup long Long signals
 * A pattern of timed events.
 *
 * The request is an array of event records of 17 integers each, end to end:
 *
 * @verbatim
 *     index    4096: continuous vibration                     4097: transient
 *     0        4096                                           4097
 *     1        start, ms from the pattern's start             start, ms from the pattern's start
 *     2        not read                                       intensity, percent
 *     3        not read                                       level, 0..100
 *     4        duration, ms                                   not read, up to index 16
 *     5..7     curve point 1: time ms, intensity %, frequency offset
 *     8..10    curve point 2
 *     11..13   curve point 3
 *     14..16   curve point 4
 * @endverbatim
 *
 * Between two points the intensity moves along a quarter sine and the frequency linearly. The phase is that frequency
 * times the time since the point, and not summed up, so that it restarts at each point and a sweep moves at about twice
 * the distance that its points name: from 170 to 310 Hz it ends near 450. Point times do not decrease and span the
 * duration; only their differences matter. Points may lie beyond the duration: segments are drawn as far as they fall
 * inside the event, rest (255) where none does.
 *
 * The last record must be the event that ends last. For the event stream records stand in ascending order of start.
 *
 * Every integer that equals 4096 or 4097 starts a record, wherever it stands: a pattern's author avoids these two
 * values as times, durations and intensities (take 4095 or 4098), or an unintended event appears. Such a record that
 * does not fit into the array is passed over in sample output and read with zeros in the compact stream.
 *
 * Times become samples by 32-bit multiplication with SAMPLE_RATE / 1000 (integer division).
 * @{ */

/** Length in bytes of one pass of the pattern (sample output), from its start to the end of the last record, of which a
 * transient counts in whole milliseconds. loopCount and intervalMs are not read. For chip type 11 the length of the
 * whole compact stream: 2 + 6 * events * max(1, loopCount).
 *
 * This sizes the buffer when the pattern plays once and its last record ends last; for anything else ask
 * getLongSignalBufferLength. The arithmetic is 32-bit: a start or duration below 0 can make the length negative, and
 * times beyond 89478485 ms at 24000 samples a second wrap, perhaps to a positive number. 0 for fewer than 17 integers
 * (sample output), a null pattern, a last record that is not an event, and a stream beyond 2^31 - 1 bytes. */
int32_t getLongSignalDataLength(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, int32_t patternLen);

/** Number of bytes from out to the end of what getLongSignalData with the same arguments may write: size buffers by
 * this one. For chip type 11 the stream's length; otherwise one pass or the furthest continuous vibration, whichever
 * ends later, and with repetition at least the end of the last copy. 0 when there is nothing to write or the request
 * cannot be served. */
int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, int32_t patternLen);

/** Renders a pattern into out, getLongSignalBufferLength bytes.
 *
 * Sample output: all continuous vibrations are drawn in array order, then all transients; what is written later wins,
 * nothing is mixed. Bytes that no event covers, and the gaps between repetitions, keep their content: clear the buffer
 * to 0 for rest. Transients are cut at the end of the pass, or at the end of the furthest continuous vibration where
 * that lies later. With loopCount of 2 or more, the pass is copied loopCount - 1 times, intervalMs of silence apart.
 *
 * limitMs: the latest time at which a continuous vibration may start. The limit in samples is the 32-bit product
 * SAMPLE_RATE * limitMs, which wraps above LRASYNTH_NO_LIMIT_MS at 24000 samples a second, divided by 1000.
 *
 * Compact stream (chip type 11): bytes 0..1 the total time * loopCount, little-endian; then 6 bytes per event, as
 * often as the pattern plays: 0, delta (16 bits little-endian), strength, duration (16 bits little-endian; 5 for a
 * transient). Delta is the start relative to the record 17 integers before; the strength of a continuous vibration is
 * the intensity of its point 2. intervalMs and limitMs are not read.
 *
 * Returns 0: everything was drawn, but for what is cut as said above, records that do not fit into the array and taps
 * that the motor does not have; none of these is reported. Returns -1 with nothing written for a null pointer and a
 * size beyond 2^31 - 1, in sample output also for an event that starts before the pattern and a negative interval that
 * would start copies before the buffer; -1 with the continuous vibrations before it drawn when one starts beyond the
 * limit. F0 becomes the motor's resonant frequency when there is a continuous vibration to draw or to find too late. */
int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, uint8_t *out,
                          int32_t patternLen, int32_t limitMs);

/** Draws one continuous vibration, SAMPLE_RATE / 1000 * duration bytes (32-bit) from out on, which is where its first
 * sample goes: the start time is only compared with limitSamples. event: the 17 integers of its record. Sets F0 to
 * the motor's resonant frequency. Returns 0; -1, nothing written, when it starts beyond limitSamples and for a null
 * pointer. */
int32_t get_4096_wave(const int32_t *event, uint8_t *out, int32_t limitSamples);

/** Draws one transient at its start: out is the buffer's beginning and must hold SAMPLE_RATE / 1000 * startMs (32-bit)
 * plus getShortSignalDataLength(level) bytes. On motor 1040 the intensity is first scaled by getIntensity. Returns 0,
 * also on motors without transients; -1, nothing written, for a negative start and a null out. */
int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t *out);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup tones Tone primitives
 * @{ */

/** Renders a sine burst of halfPeriods half-periods at a frequency in Hz as sample codes. amplitude is in sample units,
 * 0..127. Writes get_sine_wave_len(frequencyHz, halfPeriods * 0.5f) bytes. Returns 0, or -1 for a null out. */
int32_t sine(int32_t halfPeriods, int32_t frequencyHz, int32_t amplitude, uint8_t *out);

/** Renders a sine burst as offset values. strength is in percent of 255; values are clipped at 382 from above. Writes
 * get_sine_wave_len(frequencyHz, cycles) floats. Returns 0, or -1 for a null out. */
int32_t get_sine(int32_t frequencyHz, int32_t strength, float *out, float cycles);

/** Renders count envelope values from start toward end along a quarter sine (at 24000 samples a second; along a half
 * sine at 12000). Returns 0, or -1 for a null out. */
int32_t getIncreasingStepIntensity(int32_t count, float *out, float start, float end);

/** @} */

#endif /* LRASYNTH_NO_BARE_NAMES */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup windows Profile in hand, any window
 * The same waveforms without process-wide settings: the profile is an argument, and nothing is read or written but the
 * arguments, not even F0. So any number of threads and motors work side by side.
 *
 * The functions of reading work like pread: they write samples first .. first + count - 1 of a waveform, every one of
 * them (0, the rest code of drivers, where no event stands and in gaps), never one more, and return how many they
 * wrote, less than count only at the waveform's end. Any window in any order; nothing is kept between calls. A pattern
 * of hours plays through a buffer of 1 KiB:
 *
 *     lrasynth_profile motor = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
 *     lrasynth_pattern ring = {records, length, 1000, 200, LRASYNTH_NO_LIMIT};
 *     int64_t at = 0, n;
 *     while ((n = lrasynth_pattern_read(&motor, &ring, at, block, sizeof block)) > 0) {
 *       play(block, n);
 *       at += n;
 *     }
 *     if (n < 0) puts(lrasynth_error_text(n));
 *
 * The windows of a waveform put together are the bytes that getShortSignalData and getLongSignalData write into a
 * cleared buffer under the same profile and limit, wherever these return 0 and write anything. As there, a tap inside a
 * pattern plays at its level's share of the intensity (getIntensity).
 *
 * With LRASYNTH_CHIP_EVENT_STREAM they are the event stream. It sends a tap's intensity as it is, knows neither
 * interval nor limit, and is refused neither for them nor for an event that starts before the pattern.
 *
 * What cannot be served is refused with a negative number that says why (LRASYNTH_ERROR_...), by the functions of
 * length and of reading alike, and nothing is written. Of several causes it is the first in the order of the function's
 * own list.
 * @{ */

/** A chip and its motor. */
typedef struct lrasynth_profile {
  int32_t chip_type;   /**< Only LRASYNTH_CHIP_EVENT_STREAM makes a difference: the rate stands beside it. */
  int32_t sample_rate; /**< Samples per second; any value is safe. */
  int32_t motor_type;  /**< Unknown ones fall back as documented. */
  int32_t boost_flag;  /**< As giBoostFlg stores it: 1 is boost, 0 is none. Only motor 832 has it. */
} lrasynth_profile;

/** A long signal. Nothing of it is kept. */
typedef struct lrasynth_pattern {
  const int32_t *records; /**< Integers, 17 to a record, as getLongSignalData takes them. */
  int32_t length;         /**< Number of integers. */
  int32_t loop_count;     /**< How often it plays; 1 and less: once. For an event stream at least 1: its header has
                               the time of one pass times this number, whatever it is. */
  int32_t interval_ms;    /**< Silence between two passes. Negative: the next one begins before the pass ends, and what
                               is left of the pass repeats up to the end of the last one. */
  int32_t limit_ms;       /**< Latest start of a continuous vibration. Does not wrap; negative: no limit. */
} lrasynth_pattern;

#define LRASYNTH_NO_LIMIT (-1) /**< As limit_ms. */

/** Why a call was refused, or what is wrong with a request.
 * @{ */
#define LRASYNTH_ERROR_NULL_POINTER (-1)    /**< A profile, a pattern, its records or the buffer is missing. */
#define LRASYNTH_ERROR_NEGATIVE_WINDOW (-2) /**< first or count is negative. */
#define LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS (-3)
#define LRASYNTH_ERROR_LEVEL_WITHOUT_TAP (-4)
#define LRASYNTH_ERROR_EARLY_EVENT (-5) /**< An event starts before the pattern (samples). */
#define LRASYNTH_ERROR_LATE_EVENT (-6)  /**< A continuous vibration starts later than the limit (samples). */
#define LRASYNTH_ERROR_EARLY_COPY (-7)  /**< The interval would start a pass before the first one (samples). */
/** @} */

/** What only lrasynth_pattern_check finds.
 * @{ */
#define LRASYNTH_ERROR_LENGTH (-16)            /**< The number of integers is negative, or no multiple of 17. */
#define LRASYNTH_ERROR_NO_RECORD (-17)         /**< An integer that should be a type is none. */
#define LRASYNTH_ERROR_INCOMPLETE_RECORD (-18) /**< A record that does not fit into the array. */
#define LRASYNTH_ERROR_READS_AS_RECORD (-19)   /**< A parameter of the value of a type. */
#define LRASYNTH_ERROR_NEGATIVE_TIME (-20)     /**< A start or duration. */
#define LRASYNTH_ERROR_HUGE_TIME (-21)         /**< A time or an interval that reaches beyond 2^31 - 1 samples. */
#define LRASYNTH_ERROR_POINTS_BACKWARDS (-22)  /**< A point before the one that it follows. */
#define LRASYNTH_ERROR_POINTS_SPAN (-23)       /**< The points do not span the whole duration. */
#define LRASYNTH_ERROR_FULL_SCALE (-24)        /**< An amplitude beyond full scale, or a tap beyond 100 %. */
#define LRASYNTH_ERROR_LAST_RECORD (-25)       /**< The last record is not the event that ends last. */
#define LRASYNTH_ERROR_STREAM_ORDER (-26)      /**< Records of an event stream not in ascending order of start. */
#define LRASYNTH_ERROR_STREAM_TIME (-27)       /**< A time beyond the 16 bits of an event stream. */
#define LRASYNTH_ERROR_SAMPLE_RATE (-28)       /**< A sample rate below 12000, or no multiple of 1000. */
#define LRASYNTH_ERROR_STREAM_STRENGTH (-29)   /**< A strength beyond the 8 bits of an event stream. */
#define LRASYNTH_ERROR_OFFSET (-30)            /**< A frequency offset beyond -50..50. */
#define LRASYNTH_ERROR_STREAM_LOOPS (-31)      /**< A loop count of an event stream below 1. */
/** @} */

/** LRASYNTH_VERSION of the library that runs, which may be newer than that of the header. */
int32_t lrasynth_version(void);

/** An English half sentence for one of the errors above; "no error" for 0 and more, "unknown error" for others. Never
 * null, not to be freed. */
const char *lrasynth_error_text(int64_t error);

/** A profile whose sample rate is the one that setChipType derives. The boost flag is taken as stored, without the
 * inversion of setBoostFlg. */
lrasynth_profile lrasynth_profile_of(int32_t chip_type, int32_t motor_type, int32_t boost_flag);

/** Length of a tap in samples, 0 where a sample rate below 1 leaves nothing of it, or one of
 * LRASYNTH_ERROR_NULL_POINTER, LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, LRASYNTH_ERROR_LEVEL_WITHOUT_TAP. */
int64_t lrasynth_tap_length(const lrasynth_profile *profile, int32_t level);

/** Reads a window of a tap into out, count bytes. Returns how many samples were written, or an error as
 * lrasynth_tap_length, or LRASYNTH_ERROR_NEGATIVE_WINDOW, or LRASYNTH_ERROR_NULL_POINTER for out, which may be null
 * where nothing is to be written. */
int64_t lrasynth_tap_read(const lrasynth_profile *profile, int32_t level, int32_t intensity, int64_t first,
                          uint8_t *out, int64_t count);

/** Length of a long signal with all its passes in samples (an event stream: in bytes), or one of
 * LRASYNTH_ERROR_NULL_POINTER, LRASYNTH_ERROR_EARLY_EVENT, LRASYNTH_ERROR_EARLY_COPY, LRASYNTH_ERROR_LATE_EVENT (of an
 * event stream, the first alone). An array of fewer than 17 integers (an event stream: of none) is empty and may be
 * null. Where getLongSignalBufferLength has an answer, it is the same; this one goes beyond 2^31 - 1. Times within a
 * pass, and the interval, are 32-bit in samples. */
int64_t lrasynth_pattern_length(const lrasynth_profile *profile, const lrasynth_pattern *pattern);

/** Reads a window of a long signal into out, count bytes. Returns how many samples were written, or an error as
 * lrasynth_pattern_length, or LRASYNTH_ERROR_NEGATIVE_WINDOW, or LRASYNTH_ERROR_NULL_POINTER for out, which may be null
 * where nothing is to be written. Every call looks through the whole request, a fraction of a nanosecond for each
 * integer where records are laid end to end: 120 records that play once, read in windows of 256, cost at most four
 * times the whole read at once; up to eight times where all are stored bursts, which are cheap themselves. */
int64_t lrasynth_pattern_read(const lrasynth_profile *profile, const lrasynth_pattern *pattern, int64_t first,
                              uint8_t *out, int64_t count);

/** Whether a request is well formed, before a host ships it. Returns 0 or the first fault, and stores the index of the
 * integer at fault in *index, unless index is null; 0 where there is none. Looked for are, in this order,
 *
 * @verbatim
 *     LRASYNTH_ERROR_...   index of                                           what
 *     NULL_POINTER         0: also where lrasynth_pattern_length gives it
 *     SAMPLE_RATE          0                                                  (samples)
 *     LENGTH               0: negative, or null with fewer than 17 integers
 *   record by record:
 *     NO_RECORD            the integer where a record should begin
 *     LENGTH               the same, with fewer than 17 integers left
 *     INCOMPLETE_RECORD    the type, with fewer than 17 integers left
 *     READS_AS_RECORD      the parameter equal to 4096 or 4097
 *     NEGATIVE_TIME        the start, the duration
 *     HUGE_TIME            the start                                          (samples)
 *     LATE_EVENT           the start                                          (samples)
 *     MOTOR_WITHOUT_TAPS   the type                                           of a tap
 *     LEVEL_WITHOUT_TAP    the level                                          of a tap
 *     FULL_SCALE           the intensity: getIntensity beyond -100..100       of a tap
 *   point by point:
 *     POINTS_BACKWARDS     the time
 *     FULL_SCALE           the intensity: an amplitude beyond -127..127
 *     OFFSET               the offset                                         (samples)
 *   then:
 *     POINTS_SPAN          the time of point 4: from point 1 it is less than the duration
 *     HUGE_TIME            the time of point 4: from point 1 it is too far    (samples)
 *     LAST_RECORD          the type of the first event that ends later than   (samples, in whole ms)
 *                          the last record
 *     HUGE_TIME            the number of integers: the interval               (samples, where a pass repeats)
 *     EARLY_COPY           the number of integers                             (samples)
 *   record by record:
 *     STREAM_ORDER         the start                                          (event stream)
 *     STREAM_TIME          the start, the duration                            (event stream)
 *     STREAM_STRENGTH      the intensity that is sent: of a vibration, the    (event stream)
 *                          one of point 2
 *   then:
 *     STREAM_TIME          the number of integers: the total                  (event stream)
 *     STREAM_LOOPS         the number of integers                             (event stream)
 * @endverbatim
 *
 * A request without a fault plays as its author wrote it on this profile: nothing is passed over, clamped, wrapped or
 * cut, but for what patterns and signals are like:
 *   - Of events that overlap the later one plays, and may cover another whole; passes that overlap cut one another. A
 *     tap at the end of a pass loses less than a millisecond. What points beyond a duration steer is cut there.
 *   - A tap driven at 100 % on motor 1040 can have single samples of 128 at its positive peaks: see getShortSignalData.
 *     Levels outside 0..100 have the frequency of the nearest level there. On an unknown motor offsets shift nothing.
 *   - Only at 24000 samples a second does the envelope run along a quarter sine, and reach the next point. At 12000 it
 *     goes there and back; between the two it goes back in part; above, it stops short. At every rate but 24000 stored
 *     bursts take longer or shorter.
 *   - The carrier's single-precision phase adds noise in long segments: about one percent of the amplitude two minutes
 *     behind a point, and ten behind it in ten minutes.
 *   - An event stream holds of a vibration its start, its duration and the intensity of point 2, of a tap its start
 *     and its intensity, and of the pattern how often it plays: no interval and no limit. */
int32_t lrasynth_pattern_check(const lrasynth_profile *profile, const lrasynth_pattern *pattern, int32_t *index);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup facts Facts of chips and motors
 * What tools tell of them, for the profile in hand. Nothing but the arguments is read or written; a null profile gives
 * 0 where no error is named.
 * @{ */

/** The known motor models in ascending order of their numbers, index 0 and up; 0 from their count on. */
int32_t lrasynth_motor(int32_t index);

/** The known chip types, index 0 and up; -1 from their count on. */
int32_t lrasynth_chip(int32_t index);

/** Resonant frequency of the motor in Hz, as getF0 returns it. */
int32_t lrasynth_resonance_hz(const lrasynth_profile *profile);

/** 1 where the boost flag makes a difference to the motor, else 0. */
int32_t lrasynth_has_boost(const lrasynth_profile *profile);

/** 1 where taps inside a pattern are driven at their level's share of the intensity, else 0. */
int32_t lrasynth_has_shares(const lrasynth_profile *profile);

/** Frequency in Hz of a continuous vibration at an offset, clamped to -50..50, around the motor's resonance. */
int32_t lrasynth_offset_hz(const lrasynth_profile *profile, int32_t offset);

/** Gain of a continuous vibration at an offset, clamped to -50..50: its amplitude at intensity 100, of 128. */
float lrasynth_offset_gain(const lrasynth_profile *profile, int32_t offset);

/** The intensity in percent at which a tap of a level is driven inside a pattern. */
int32_t lrasynth_tap_driven(const lrasynth_profile *profile, int32_t level, int32_t intensity);

/** A piece of a tap. */
typedef struct lrasynth_segment {
  int32_t frequency_hz; /**< 0: silent. */
  int32_t length;       /**< In samples. */
} lrasynth_segment;

#define LRASYNTH_SEGMENTS 4 /**< Of a tap that is made of segments: drive, zero time, F1 and F2. */

/** Tells the segments of a level's tap: fills the LRASYNTH_SEGMENTS of the array and returns their number; 0, nothing
 * written, where the motor's taps are stored bursts; or one of LRASYNTH_ERROR_NULL_POINTER,
 * LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, LRASYNTH_ERROR_LEVEL_WITHOUT_TAP. */
int32_t lrasynth_tap_segments(const lrasynth_profile *profile, int32_t level, lrasynth_segment *segments);

/** Length in samples of the burst that sine renders, or LRASYNTH_ERROR_NULL_POINTER. */
int64_t lrasynth_tone_length(const lrasynth_profile *profile, int32_t frequency_hz, int32_t half_periods);

/** Reads a window of that burst into out, count bytes, with the bytes of sine. amplitude is in sample units. Returns
 * how many samples were written, or one of LRASYNTH_ERROR_NULL_POINTER, LRASYNTH_ERROR_NEGATIVE_WINDOW. */
int64_t lrasynth_tone_read(const lrasynth_profile *profile, int32_t frequency_hz, int32_t half_periods,
                           int32_t amplitude, int64_t first, uint8_t *out, int64_t count);

/** @} */

/* ------------------------------------------------------------------------------------------------------------------ */
/** @defgroup builders Builders of records
 * Inline where the language has that, C++ and C from C99 on, so that a host that uses them runs with a library of
 * version 1.1 too. Exported as well, since 1.2, for all other callers.
 * @{ */

/** @cond */
#if defined(LRASYNTH_HAS_BUILDERS) /* in the library itself, which exports them */
#define LRASYNTH_BUILDER
#elif defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 199901L)
#define LRASYNTH_HAS_BUILDERS
#define LRASYNTH_BUILDER static inline
#else
#define LRASYNTH_BUILDER
#endif
/** @endcond */

/** One of the four points of a continuous vibration. */
typedef struct lrasynth_point {
  int32_t ms;        /**< From the event's start; only the differences between points matter. */
  int32_t intensity; /**< Percent. */
  int32_t offset;    /**< Frequency offset, -50..50. */
} lrasynth_point;

/** Fills the LRASYNTH_RECORD_LENGTH integers of a record with a tap. */
LRASYNTH_BUILDER void lrasynth_put_transient(int32_t *record, int32_t start_ms, int32_t intensity, int32_t level);

/** Fills the LRASYNTH_RECORD_LENGTH integers of a record with a continuous vibration of four points, which span its
 * duration. Neither this nor the other checks anything, not even for null: see lrasynth_pattern_check. */
LRASYNTH_BUILDER void lrasynth_put_continuous(int32_t *record, int32_t start_ms, int32_t duration_ms,
                                              const lrasynth_point points[4]);

#ifdef LRASYNTH_HAS_BUILDERS
LRASYNTH_BUILDER void lrasynth_put_transient(int32_t *record, int32_t start_ms, int32_t intensity, int32_t level) {
  int i;
  record[0] = LRASYNTH_TRANSIENT;
  record[1] = start_ms;
  record[2] = intensity;
  record[3] = level;
  for (i = 4; i < LRASYNTH_RECORD_LENGTH; ++i) record[i] = 0;
}

LRASYNTH_BUILDER void lrasynth_put_continuous(int32_t *record, int32_t start_ms, int32_t duration_ms,
                                              const lrasynth_point points[4]) {
  int i;
  record[0] = LRASYNTH_CONTINUOUS;
  record[1] = start_ms;
  record[2] = 0;
  record[3] = 0;
  record[4] = duration_ms;
  for (i = 0; i < 4; ++i) {
    record[5 + 3 * i] = points[i].ms;
    record[6 + 3 * i] = points[i].intensity;
    record[7 + 3 * i] = points[i].offset;
  }
}
#endif

/** @} */

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif /* LRASYNTH_H */
