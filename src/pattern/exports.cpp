// SPDX-License-Identifier: Apache-2.0
// The documented exports of long signals, on the profile that the host has set.
#include <limits>

#include "lrasynth.h"
#include "pattern/signal.h"
#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {
namespace {

// What these cannot report is as good as refused: -1.
int64_t reportable(int64_t length) { return length <= std::numeric_limits<int32_t>::max() ? length : -1; }

int32_t write(const Profile& /*profile*/, const EventStream& stream, int32_t /*limit_samples*/, uint8_t* out) {
  stream.draw({0, stream.length(), out});
  return 0;
}

// F0 is set at the turn of the first continuous vibration, late or not.
int32_t write(const Profile& profile, const LongSignal& signal, int32_t limit_samples, uint8_t* out) {
  if (signal.has_vibration()) publish_f0(profile.motor);
  if (!signal.starts_by(limit_samples)) {
    signal.draw_until(limit_samples, out);
    return -1;
  }
  signal.draw({0, signal.length(), out});
  return 0;
}

int32_t length_of(const Profile& profile, const lrasynth_pattern& pattern) {
  const int64_t length =
      use_signal(profile, pattern, kNoLimit, [](const auto& signal) -> int64_t { return reportable(signal.length()); });
  return static_cast<int32_t>(std::max<int64_t>(0, length));
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t getLongSignalDataLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  const Profile profile = current_profile();
  if (profile.chip_type != LRASYNTH_CHIP_EVENT_STREAM) return pass_length(profile, Request(pattern, patternLen));
  return length_of(profile, {pattern, patternLen, loopCount, intervalMs, LRASYNTH_NO_LIMIT});
}

int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  return length_of(current_profile(), {pattern, patternLen, loopCount, intervalMs, LRASYNTH_NO_LIMIT});
}

int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, uint8_t* out,
                          int32_t patternLen, int32_t limitMs) {
  const Profile profile = current_profile();
  const int32_t limit_samples = wrap(int64_t{profile.rate.hz} * limitMs) / 1000;
  const int64_t status = use_signal(profile, {pattern, patternLen, loopCount, intervalMs, limitMs}, kNoLimit,
                                    [&](const auto& signal) -> int64_t {
                                      if (reportable(signal.length()) < 0 || refuses(out, signal.length())) return -1;
                                      return write(profile, signal, limit_samples, out);
                                    });
  return status == 0 ? 0 : -1;
}

int32_t get_4096_wave(const int32_t* event, uint8_t* out, int32_t limitSamples) {
  if (event == nullptr) return -1;
  const Profile profile = current_profile();
  const Record record(event);
  const Vibration vibration(profile, record);
  if (refuses(out, vibration.length())) return -1;
  publish_f0(profile.motor);
  if (profile.rate.samples(record.start_ms()) > limitSamples) return -1;
  vibration.draw({0, vibration.length(), out});
  return 0;
}

int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t* out) {
  const Profile profile = current_profile();
  const int32_t start = profile.rate.samples(startMs);
  const Tap tap = tap_in_pattern(profile, level, intensity);
  if (start < 0) return -1;
  return write(tap, out == nullptr ? nullptr : out + start);
}
