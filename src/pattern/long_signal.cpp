// SPDX-License-Identifier: Apache-2.0
// Layout and drawing of long signals: continuous vibrations, then transients, then copies of the pass.
#include "pattern/long_signal.h"

#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {

int64_t end_in_ms(const Profile& profile, const Record& record) {
  const int32_t per_ms = profile.rate.per_ms();
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
      repetition_(repetition_of(profile, pass_length(profile, request), loop_count, interval_ms)),
      room_(repetition_.pass) {
  request_.each(LRASYNTH_CONTINUOUS, [this](const Record& record) {
    const int64_t start = start_of(record);
    const int64_t length = profile_.rate.samples(record.duration_ms);
    earliest_start_ = std::min(earliest_start_, start);
    latest_vibration_start_ = std::max(latest_vibration_start_, start);
    if (length > 0) room_ = std::max(room_, start + length);
  });
  request_.each(LRASYNTH_TRANSIENT,
                [this](const Record& record) { earliest_start_ = std::min(earliest_start_, start_of(record)); });
}

int32_t LongSignal::refusal(int64_t limit_samples) const {
  if (earliest_start_ < 0) return LRASYNTH_ERROR_EARLY_EVENT;
  if (repetition_.stride < 0) return LRASYNTH_ERROR_EARLY_COPY;
  return latest_vibration_start_ > limit_samples ? LRASYNTH_ERROR_LATE_EVENT : 0;
}

// Later events replace earlier ones, and any transient any continuous vibration. Nothing is mixed.
void LongSignal::draw(const Window<uint8_t>& window) const {
  draw_repeated(repetition_, window, [this](const Window<uint8_t>& part) {
    if (part.first >= room_) return;
    request_.each(LRASYNTH_CONTINUOUS, [&](const Record& record) { draw_vibration(record, part); });
    request_.each(LRASYNTH_TRANSIENT, [&](const Record& record) { draw_transient(record, part); });
  });
}

void LongSignal::draw_until(int64_t limit_samples, uint8_t* out) const {
  bool in_time = true;
  request_.each(LRASYNTH_CONTINUOUS, [&](const Record& record) {
    in_time = in_time && start_of(record) <= limit_samples;
    if (in_time) draw_vibration(record, {0, room_, out});
  });
}

void LongSignal::draw_vibration(const Record& record, const Window<uint8_t>& window) const {
  const Window<uint8_t> part = window.of_piece(start_of(record), profile_.rate.samples(record.duration_ms));
  if (!part.empty()) vibration_of(profile_, record).draw(part);
}

// As far as the room lasts.
void LongSignal::draw_transient(const Record& record, const Window<uint8_t>& window) const {
  const int64_t start = start_of(record);
  if (start >= window.end) return;
  const Tap tap = tap_in_pattern(profile_, record.level, record.intensity);
  const Window<uint8_t> part = window.of_piece(start, std::min<int64_t>(tap.length(), room_ - start));
  if (!part.empty()) tap.draw(part);
}

}  // namespace lrasynth
