/* SPDX-License-Identifier: Apache-2.0 */
/* Printed by scripts/print-declarations from lrasynth.h, which says what all of it means.
 * Needs no preprocessor: cffi's cdef and other readers of declarations take it as it is. */
#define LRASYNTH_VERSION_MAJOR 1
#define LRASYNTH_VERSION_MINOR 2
#define LRASYNTH_VERSION_PATCH 0
#define LRASYNTH_VERSION 10200
#define LRASYNTH_MOTOR_832 832
#define LRASYNTH_MOTOR_1040 1040
#define LRASYNTH_MOTOR_9595 9595
#define LRASYNTH_MOTOR_81540 81540
#define LRASYNTH_CHIP_HALF_RATE 1
#define LRASYNTH_CHIP_EVENT_STREAM 11
#define LRASYNTH_CONTINUOUS 4096
#define LRASYNTH_TRANSIENT 4097
#define LRASYNTH_RECORD_LENGTH 17
#define LRASYNTH_NO_LIMIT_MS 89478
#define LRASYNTH_NO_LIMIT -1
#define LRASYNTH_ERROR_NULL_POINTER -1
#define LRASYNTH_ERROR_NEGATIVE_WINDOW -2
#define LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS -3
#define LRASYNTH_ERROR_LEVEL_WITHOUT_TAP -4
#define LRASYNTH_ERROR_EARLY_EVENT -5
#define LRASYNTH_ERROR_LATE_EVENT -6
#define LRASYNTH_ERROR_EARLY_COPY -7
#define LRASYNTH_ERROR_LENGTH -16
#define LRASYNTH_ERROR_NO_RECORD -17
#define LRASYNTH_ERROR_INCOMPLETE_RECORD -18
#define LRASYNTH_ERROR_READS_AS_RECORD -19
#define LRASYNTH_ERROR_NEGATIVE_TIME -20
#define LRASYNTH_ERROR_HUGE_TIME -21
#define LRASYNTH_ERROR_POINTS_BACKWARDS -22
#define LRASYNTH_ERROR_POINTS_SPAN -23
#define LRASYNTH_ERROR_FULL_SCALE -24
#define LRASYNTH_ERROR_LAST_RECORD -25
#define LRASYNTH_ERROR_STREAM_ORDER -26
#define LRASYNTH_ERROR_STREAM_TIME -27
#define LRASYNTH_ERROR_SAMPLE_RATE -28
#define LRASYNTH_ERROR_STREAM_STRENGTH -29
#define LRASYNTH_ERROR_OFFSET -30
#define LRASYNTH_ERROR_STREAM_LOOPS -31
#define LRASYNTH_SEGMENTS 4
typedef struct lrasynth_profile { int32_t chip_type; int32_t sample_rate; int32_t motor_type; int32_t boost_flag; } lrasynth_profile;
typedef struct lrasynth_pattern { const int32_t *records; int32_t length; int32_t loop_count; int32_t interval_ms; int32_t limit_ms; } lrasynth_pattern;
int32_t lrasynth_version(void);
const char *lrasynth_error_text(int64_t error);
lrasynth_profile lrasynth_profile_of(int32_t chip_type, int32_t motor_type, int32_t boost_flag);
int64_t lrasynth_tap_length(const lrasynth_profile *profile, int32_t level);
int64_t lrasynth_tap_read(const lrasynth_profile *profile, int32_t level, int32_t intensity, int64_t first, uint8_t *out, int64_t count);
int64_t lrasynth_pattern_length(const lrasynth_profile *profile, const lrasynth_pattern *pattern);
int64_t lrasynth_pattern_read(const lrasynth_profile *profile, const lrasynth_pattern *pattern, int64_t first, uint8_t *out, int64_t count);
int32_t lrasynth_pattern_check(const lrasynth_profile *profile, const lrasynth_pattern *pattern, int32_t *index);
int32_t lrasynth_motor(int32_t index);
int32_t lrasynth_chip(int32_t index);
int32_t lrasynth_resonance_hz(const lrasynth_profile *profile);
int32_t lrasynth_has_boost(const lrasynth_profile *profile);
int32_t lrasynth_has_shares(const lrasynth_profile *profile);
int32_t lrasynth_offset_hz(const lrasynth_profile *profile, int32_t offset);
float lrasynth_offset_gain(const lrasynth_profile *profile, int32_t offset);
int32_t lrasynth_tap_driven(const lrasynth_profile *profile, int32_t level, int32_t intensity);
typedef struct lrasynth_segment { int32_t frequency_hz; int32_t length; } lrasynth_segment;
int32_t lrasynth_tap_segments(const lrasynth_profile *profile, int32_t level, lrasynth_segment *segments);
int64_t lrasynth_tone_length(const lrasynth_profile *profile, int32_t frequency_hz, int32_t half_periods);
int64_t lrasynth_tone_read(const lrasynth_profile *profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude, int64_t first, uint8_t *out, int64_t count);
typedef struct lrasynth_point { int32_t ms; int32_t intensity; int32_t offset; } lrasynth_point;
void lrasynth_put_transient(int32_t *record, int32_t start_ms, int32_t intensity, int32_t level);
void lrasynth_put_continuous(int32_t *record, int32_t start_ms, int32_t duration_ms, const lrasynth_point points[4]);
/* The names without a prefix, which a library without bare names does not have: */
extern int32_t IC_TYPE;
extern int32_t SAMPLE_RATE;
extern int32_t giMotorType;
extern int32_t giBoostFlg;
extern int32_t F0;
void setChipType(int32_t chipType);
int32_t setMotorType(int32_t motorType);
int32_t getMotorType(void);
void setF0(int32_t frequencyHz);
int32_t getF0(void);
int32_t setBoostFlg(int32_t flag);
int32_t getBoostFlg(void);
float wave_transform(float offsetValue);
float custom_wave_transform(int32_t offsetValue);
float wave_reverse(float offsetValue);
int32_t getFrequency(int32_t level);
int32_t getFrequency_0832_ShortData(int32_t level);
int32_t getFrequency_1040_ShortData(int32_t level);
int32_t getFrequency_9595_ShortData(int32_t level);
int32_t getFrequency_0815_ShortData(int32_t level);
int32_t getFrequency_4096(int32_t baseHz, int32_t offset);
int32_t getFrequency_0832(int32_t baseHz, int32_t offset);
int32_t getFrequency_1040(int32_t baseHz, int32_t offset);
int32_t getFrequency_9595(int32_t baseHz, int32_t offset);
int32_t getFrequency_081540(int32_t baseHz, int32_t offset);
float getFrequencyStepValue(int32_t fromHz, int32_t toHz, int32_t stepCount);
int32_t getIntensity(int32_t level, int32_t intensity);
int32_t getIntensity_0832(int32_t level, int32_t intensity);
int32_t getIntensity_1040(int32_t level, int32_t intensity);
int32_t getIntensity_9595(int32_t level, int32_t intensity);
float getIntensityMax(int32_t offset);
float getIntensityMax_0832(int32_t offset);
float getIntensityMax_1040(int32_t offset);
float getIntensityMax_9595(int32_t offset);
int32_t getCycle(int32_t level);
int32_t getShortSignalDataLength(int32_t level);
int32_t getShortSignalData(int32_t level, int32_t intensity, uint8_t *out);
int32_t getShortSignalDataLength_1040(int32_t level);
int32_t getShortSignalData_1040(int32_t level, int32_t intensity, uint8_t *out);
int32_t getShortSignalDataLength_0832(int32_t level);
int32_t getShortSignalDataLength_9595(int32_t level);
int32_t getShortSignalData_0832(int32_t level, int32_t intensity, uint8_t *out);
int32_t getShortSignalData_9595(int32_t level, int32_t intensity, uint8_t *out);
float getC0(int32_t level);
float getC1(void);
float getC2(void);
int32_t getF1(int32_t level);
int32_t getF2(void);
float getZeroTime(int32_t level);
int32_t getA1(int32_t level, int32_t intensity);
int32_t getA2(int32_t level, int32_t intensity);
int32_t get_sine_wave_len(int32_t frequencyHz, float cycles);
int32_t get_wave_func_wave_len(int32_t level, int32_t f1Hz, int32_t f2Hz, float zeroTimeMs);
int32_t get_wave_func_wave_len_custom(int32_t level, int32_t f1Hz, int32_t f2Hz, float c0, float c1, float c2, float zeroTimeMs);
int32_t get_custom_wave_len(int32_t level);
int32_t get_wav_len_high_frequency(int32_t level);
int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t *out);
int32_t wave_func(int32_t level, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t *out, float zeroTimeMs);
int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t *out);
int32_t wave_func_custom(int32_t frequencyHz, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t reverse, int32_t *out, float c0, float c1, float c2, float zeroTimeMs);
int32_t get_custom_wave_len_0832(int32_t level);
int32_t get_custom_wave_len_9595(int32_t level);
int32_t shortWave_func_custom_0832(int32_t level, int32_t intensity, uint8_t *out);
int32_t shortWave_func_custom_9595(int32_t level, int32_t intensity, uint8_t *out);
int32_t transStringDataToInt(const uint8_t *source, int32_t count, int32_t *destination);
extern const uint8_t wave_custom_2p5T[576];
extern const uint8_t wave_custom_1T[208];
extern const uint8_t wave_custom_2T[540];
extern const uint8_t wave_custom_1p5T[312];
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
int32_t getLongSignalDataLength(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, int32_t patternLen);
int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, int32_t patternLen);
int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, uint8_t *out, int32_t patternLen, int32_t limitMs);
int32_t get_4096_wave(const int32_t *event, uint8_t *out, int32_t limitSamples);
int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t *out);
int32_t sine(int32_t halfPeriods, int32_t frequencyHz, int32_t amplitude, uint8_t *out);
int32_t get_sine(int32_t frequencyHz, int32_t strength, float *out, float cycles);
int32_t getIncreasingStepIntensity(int32_t count, float *out, float start, float end);
