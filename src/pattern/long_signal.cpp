// SPDX-License-Identifier: Apache-2.0
// Layout and drawing of long signals: continuous vibrations, then transients, then copies of the pass.
#include "pattern/long_signal.h"

#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {

int32_t whole_ms_of_tap(const Profile& profile, int32_t level) {
  const int32_t per_ms = profile.rate.per_ms();
  return per_ms == 0 ? 0 : tap_of(profile, level, 0).length() / per_ms;
}

namespace {

int32_t end_ms(const Profile& profile, const Record& record) {
  switch (record.type()) {
    case LRASYNTH_CONTINUOUS:
      return wrap(int64_t{record.start_ms()} + record.duration_ms());
    case LRASYNTH_TRANSIENT:
      return wrap(int64_t{record.start_ms()} + whole_ms_of_tap(profile, record.level()));
    default:
      return 0;
  }
}

Repetition repetition_of(const Profile& profile, int32_t pass, int32_t loop_count, int32_t interval_ms) {
  if (loop_count < 2 || pass < 1) return {.pass = std::max(0, pass)};
  const int64_t gap = profile.rate.samples(interval_ms);
  return {.pass = pass, .copies = int64_t{loop_count} - 1, .stride = pass + gap};
}

}  // namespace

int32_t pass_length(const Profile& profile, const Request& request) {
  return request.has_record() ? profile.rate.samples(end_ms(profile, request.last_record())) : 0;
}

LongSignal::LongSignal(const Profile& profile, const Request& request, int32_t loop_count, int32_t interval_ms)
    : profile_(profile),
      request_(request),
      repetition_(repetition_of(profile, pass_length(profile, request), loop_count, interval_ms)),
      room_(repetition_.pass) {
  request_.each(LRASYNTH_CONTINUOUS, [this](const Record& record) {
    const int64_t start = start_of(record);
    const int64_t length = profile_.rate.samples(record.duration_ms());
    earliest_start_ = std::min(earliest_start_, start);
    latest_vibration_start_ = std::max(latest_vibration_start_, start);
    if (length > 0) room_ = std::max(room_, start + length);
  });
  request_.each(LRASYNTH_TRANSIENT, [this](const Record& record) {
    earliest_start_ = std::min<int64_t>(earliest_start_, start_of(record));
  });
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
  const int32_t length = profile_.rate.samples(record.duration_ms());
  const Window<uint8_t> part = window.of_piece(start_of(record), length);
  if (!part.empty()) Vibration(profile_, record).draw(part);
}

// As far as the room lasts.
void LongSignal::draw_transient(const Record& record, const Window<uint8_t>& window) const {
  const int64_t start = start_of(record);
  if (start >= window.end) return;
  const Tap tap = tap_in_pattern(profile_, record.level(), record.intensity());
  const Window<uint8_t> part = window.of_piece(start, std::min<int64_t>(tap.length(), room_ - start));
  if (!part.empty()) tap.draw(part);
}

}  // namespace lrasynth
