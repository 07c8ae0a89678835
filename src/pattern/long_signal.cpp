// SPDX-License-Identifier: Apache-2.0
// Layout and drawing of long signals: continuous vibrations, then transients, then copies of the pass.
#include "pattern/long_signal.h"

#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {

int64_t end_in_ms(const Profile& profile, const Record& record) {
  const int32_t per_ms = profile.rate.per_ms;
  switch (record.type) {
    case LRASYNTH_CONTINUOUS:
      return int64_t{record.start_ms} + record.duration_ms;
    case LRASYNTH_TRANSIENT:
      return int64_t{record.start_ms} + (per_ms == 0 ? 0 : tap_of(profile, record.level, 0).length() / per_ms);
    default:
      return 0;
  }
}

int32_t pass_length(const Profile& profile, const Request& request) {
  const int32_t last = request.length() - LRASYNTH_RECORD_LENGTH;
  return last < 0 ? 0 : profile.rate.samples(wrap(end_in_ms(profile, request.record(last))));
}

namespace {

Repetition repetition_of(const Profile& profile, int32_t pass, int32_t loop_count, int32_t interval_ms) {
  if (loop_count < 2 || pass < 1) return {.pass = std::max(0, pass)};
  const int64_t gap = profile.rate.samples(interval_ms);
  return {.pass = pass, .copies = int64_t{loop_count} - 1, .stride = pass + gap};
}

}  // namespace

LongSignal::LongSignal(const Profile& profile, const Request& request, int32_t loop_count, int32_t interval_ms)
    : profile_(profile),
      request_(request),
      types_(request, std::max(0, request.length() - LRASYNTH_RECORD_LENGTH + 1)),
      repetition_(repetition_of(profile, pass_length(profile, request), loop_count, interval_ms)),
      room_(repetition_.pass) {
  // In registers: through the members every record would wait for the one before.
  int64_t earliest = 0;
  int64_t latest = kNever;
  int64_t furthest = room_;
  types_.each([&](int32_t index) {
    const int64_t start = start_of(index);
    earliest = std::min(earliest, start);
    if (request_.type(index) != LRASYNTH_CONTINUOUS) return;
    const int64_t length = length_of(index);
    latest = std::max(latest, start);
    if (length > 0) furthest = std::max(furthest, start + length);
  });
  earliest_start_ = earliest;
  latest_vibration_start_ = latest;
  room_ = furthest;
}

int32_t LongSignal::refusal(int64_t limit_samples) const {
  if (earliest_start_ < 0) return LRASYNTH_ERROR_EARLY_EVENT;
  if (repetition_.stride < 0) return LRASYNTH_ERROR_EARLY_COPY;
  return latest_vibration_start_ > limit_samples ? LRASYNTH_ERROR_LATE_EVENT : 0;
}

void LongSignal::draw(const Window<uint8_t>& window) const {
  draw_repeated(repetition_, window, [this](const Window<uint8_t>& part) {
    if (part.first < room_) draw_pass(part);
  });
}

// Later events replace earlier ones, and any transient any continuous vibration. Nothing is mixed. What lies outside
// the window is passed over before any of it is resolved.
void LongSignal::draw_pass(const Window<uint8_t>& window) const {
  const int64_t longest = longest_tap(profile_);
  int32_t first_tap = std::numeric_limits<int32_t>::max();
  int32_t behind_taps = 0;
  types_.each([&](int32_t index) {
    const bool continuous = request_.type(index) == LRASYNTH_CONTINUOUS;
    const int64_t start = start_of(index);
    if (start >= window.end || start + (continuous ? length_of(index) : longest) <= window.first) return;
    if (continuous) return draw_vibration(index, window);
    first_tap = std::min(first_tap, index);
    behind_taps = index + 1;
  });
  types_.each(first_tap, behind_taps, [&](int32_t index) {
    if (request_.type(index) == LRASYNTH_TRANSIENT) draw_transient(index, window);
  });
}

void LongSignal::draw_until(int64_t limit_samples, uint8_t* out) const {
  bool in_time = true;
  types_.each([&](int32_t index) {
    if (request_.type(index) != LRASYNTH_CONTINUOUS) return;
    in_time = in_time && start_of(index) <= limit_samples;
    if (in_time) draw_vibration(index, {0, room_, out});
  });
}

void LongSignal::draw_vibration(int32_t index, const Window<uint8_t>& window) const {
  const Window<uint8_t> part = window.of_piece(start_of(index), length_of(index));
  if (!part.empty()) vibration_of(profile_, request_.record(index)).draw(part);
}

// As far as the room lasts.
void LongSignal::draw_transient(int32_t index, const Window<uint8_t>& window) const {
  const Record record = request_.record(index);
  const Tap tap = tap_in_pattern(profile_, record.level, record.intensity);
  const int64_t start = start_of(index);
  const Window<uint8_t> part = window.of_piece(start, std::min<int64_t>(tap.length(), room_ - start));
  if (!part.empty()) tap.draw(part);
}

}  // namespace lrasynth
