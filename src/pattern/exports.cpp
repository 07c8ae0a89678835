// SPDX-License-Identifier: Apache-2.0
// The exports of long signals: on the profile that the host has set, and with the profile in hand.
#include <limits>

#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "pattern/long_signal.h"
#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {
namespace {

// Hands the signal that a pattern stands for on a chip, a LongSignal or an EventStream, to `use`, which returns a
// number; or returns why there is none. An event stream has no limit.
template <class Use>
int64_t use_signal(const Profile& profile, const lrasynth_pattern& pattern, int64_t limit_samples, Use use) {
  if (lacks_records(profile, pattern)) return LRASYNTH_ERROR_NULL_POINTER;
  const Request request(pattern.records, pattern.length);
  if (profile.streams()) return use(EventStream(request, pattern.loop_count));
  const LongSignal signal(profile, request, pattern.loop_count, pattern.interval_ms);
  const int32_t refusal = signal.refusal(limit_samples);
  return refusal != 0 ? refusal : use(signal);
}

// With the profile in hand.
template <class Use>
int64_t use_signal(const lrasynth_profile* profile, const lrasynth_pattern* pattern, Use use) {
  if (profile == nullptr || pattern == nullptr) return LRASYNTH_ERROR_NULL_POINTER;
  const Profile resolved = profile_of(*profile);
  return use_signal(resolved, *pattern, limit_in_samples(resolved.rate, pattern->limit_ms), use);
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int64_t lrasynth_pattern_length(const lrasynth_profile* profile, const lrasynth_pattern* pattern) {
  return use_signal(profile, pattern, [](const auto& signal) { return signal.length(); });
}

int64_t lrasynth_pattern_read(const lrasynth_profile* profile, const lrasynth_pattern* pattern, int64_t first,
                              uint8_t* out, int64_t count) {
  return use_signal(profile, pattern, [=](const auto& signal) { return read(signal, first, out, count); });
}

#ifndef LRASYNTH_NO_BARE_NAMES

namespace {

// What does not fit the results of the first ones is as good as refused: -1.
int64_t reportable(int64_t length) { return length <= std::numeric_limits<int32_t>::max() ? length : -1; }

int32_t length_of(const Profile& profile, const lrasynth_pattern& pattern) {
  const int64_t length =
      use_signal(profile, pattern, kNoLimit, [](const auto& signal) { return reportable(signal.length()); });
  return static_cast<int32_t>(std::max<int64_t>(0, length));
}

int32_t draw(const Profile& /*profile*/, const EventStream& stream, int64_t /*limit_samples*/, uint8_t* out) {
  stream.draw({0, stream.length(), out});
  return 0;
}

// F0 is set at the turn of the first continuous vibration, late or not.
int32_t draw(const Profile& profile, const LongSignal& signal, int64_t limit_samples, uint8_t* out) {
  if (signal.has_vibration()) publish_f0(profile.motor);
  const int32_t refusal = signal.refusal(limit_samples);
  refusal == 0 ? signal.draw({0, signal.length(), out}) : signal.draw_until(limit_samples, out);
  return refusal;
}

}  // namespace

int32_t getLongSignalDataLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  const Profile profile = current_profile();
  if (!profile.streams()) return pass_length(profile, Request(pattern, patternLen));
  return length_of(profile, {pattern, patternLen, loopCount, intervalMs, LRASYNTH_NO_LIMIT});
}

int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  return length_of(current_profile(), {pattern, patternLen, loopCount, intervalMs, LRASYNTH_NO_LIMIT});
}

int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, uint8_t* out,
                          int32_t patternLen, int32_t limitMs) {
  const Profile profile = current_profile();
  const int32_t limit_samples = wrap(int64_t{profile.rate.hz} * limitMs) / 1000;
  const lrasynth_pattern unlimited = {pattern, patternLen, loopCount, intervalMs, LRASYNTH_NO_LIMIT};
  const int64_t status = use_signal(profile, unlimited, kNoLimit, [&](const auto& signal) -> int64_t {
    if (reportable(signal.length()) < 0 || refuses(out, signal.length())) return -1;
    return draw(profile, signal, limit_samples, out);
  });
  return status == 0 ? 0 : -1;
}

int32_t get_4096_wave(const int32_t* event, uint8_t* out, int32_t limitSamples) {
  if (event == nullptr) return -1;
  const Profile profile = current_profile();
  const Record record = Request(event, LRASYNTH_RECORD_LENGTH).record(0);
  const Vibration vibration = vibration_of(profile, record);
  if (refuses(out, vibration.length)) return -1;
  publish_f0(profile.motor);
  if (profile.rate.samples(record.start_ms) > limitSamples) return -1;
  vibration.draw({0, vibration.length, out});
  return 0;
}

int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t* out) {
  const Profile profile = current_profile();
  const int32_t start = profile.rate.samples(startMs);
  if (start < 0) return -1;
  return write(tap_in_pattern(profile, level, intensity), out == nullptr ? nullptr : out + start);
}

#endif  // LRASYNTH_NO_BARE_NAMES
