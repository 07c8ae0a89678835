// SPDX-License-Identifier: Apache-2.0
// The library's version and the texts of its errors.
#include <iterator>

#include "lrasynth.h"

namespace lrasynth {
namespace {

struct ErrorText {
  int32_t error;
  const char* text;
};

constexpr ErrorText kErrorTexts[] = {
    {LRASYNTH_ERROR_NULL_POINTER, "a pointer is null"},
    {LRASYNTH_ERROR_NEGATIVE_WINDOW, "the window is negative"},
    {LRASYNTH_ERROR_MOTOR_WITHOUT_TAPS, "the motor has no taps"},
    {LRASYNTH_ERROR_LEVEL_WITHOUT_TAP, "the motor has no tap for this level"},
    {LRASYNTH_ERROR_EARLY_EVENT, "an event starts before the pattern"},
    {LRASYNTH_ERROR_LATE_EVENT, "a continuous vibration starts later than the limit"},
    {LRASYNTH_ERROR_EARLY_COPY, "the interval starts a pass before the first one"},
    {LRASYNTH_ERROR_LENGTH, "the number of integers is negative or no multiple of 17"},
    {LRASYNTH_ERROR_NO_RECORD, "no record begins where one should"},
    {LRASYNTH_ERROR_INCOMPLETE_RECORD, "a record does not fit into the array"},
    {LRASYNTH_ERROR_READS_AS_RECORD, "a parameter reads as the type of a record"},
    {LRASYNTH_ERROR_NEGATIVE_TIME, "a start or duration is negative"},
    {LRASYNTH_ERROR_HUGE_TIME, "an event or the interval reaches beyond 2^31 - 1 samples"},
    {LRASYNTH_ERROR_POINTS_BACKWARDS, "the points of a curve run backwards"},
    {LRASYNTH_ERROR_POINTS_SPAN, "the points of a curve do not span its duration"},
    {LRASYNTH_ERROR_FULL_SCALE, "an amplitude is beyond full scale"},
    {LRASYNTH_ERROR_LAST_RECORD, "the last record is not the event that ends last"},
    {LRASYNTH_ERROR_STREAM_ORDER, "the records of an event stream are not in the order of their starts"},
    {LRASYNTH_ERROR_STREAM_TIME, "a time does not fit the 16 bits of an event stream"},
    {LRASYNTH_ERROR_SAMPLE_RATE, "the sample rate is below 12000 or no multiple of 1000"},
    {LRASYNTH_ERROR_STREAM_STRENGTH, "a strength does not fit the 8 bits of an event stream"},
    {LRASYNTH_ERROR_OFFSET, "a frequency offset is beyond -50..50"},
    {LRASYNTH_ERROR_STREAM_LOOPS, "the loop count of an event stream is below 1"},
};

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t lrasynth_version() { return LRASYNTH_VERSION; }

const char* lrasynth_error_text(int64_t error) {
  if (error >= 0) return "no error";
  for (const ErrorText& row : kErrorTexts) {
    if (row.error == error) return row.text;
  }
  return "unknown error";
}
