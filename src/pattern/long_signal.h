// SPDX-License-Identifier: Apache-2.0
// The long signal in sample output, resolved: where its pass ends, where its copies lie, and how any window of it is
// drawn.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "pattern/repetition.h"
#include "pattern/request.h"
#include "profile/profile.h"
#include "tone/window.h"

namespace lrasynth {

// The latest start of a continuous vibration, in samples.
constexpr int64_t kNoLimit = std::numeric_limits<int64_t>::max();

// The same from a pattern's limit, which does not wrap and is none where it is negative.
constexpr int64_t limit_in_samples(Rate rate, int32_t limit_ms) {
  return limit_ms < 0 ? kNoLimit : int64_t{rate.hz} * limit_ms / 1000;
}

// Where an event ends, in 64 bits. A transient counts in whole milliseconds, and what is no event as nothing.
int64_t end_in_ms(const Profile& profile, const Record& record);

// Samples from the pattern's start to the end of its last record: 32-bit, as the rule gives it, also below 0. 0 without
// a record.
int32_t pass_length(const Profile& profile, const Request& request);

class LongSignal {
 public:
  LongSignal(const Profile& profile, const Request& request, int32_t loop_count, int32_t interval_ms);

  // Why it cannot be drawn under a limit, as one of the public header's errors, or 0.
  int32_t refusal(int64_t limit_samples) const;

  bool repeats() const { return repetition_.copies > 0; }
  bool has_vibration() const { return latest_vibration_start_ != kNever; }

  // Samples up to the end of whatever may be drawn.
  int64_t length() const { return std::max(room_, repetition_.end()); }

  // Draws all events and copies. Samples that no event covers are left alone.
  void draw(const Window<uint8_t>& window) const;

  // Draws, of the first pass, the continuous vibrations before the first that starts beyond the limit.
  void draw_until(int64_t limit_samples, uint8_t* out) const;

 private:
  static constexpr int64_t kNever = std::numeric_limits<int64_t>::min();

  // Of the record that starts at an integer; the length is that of a vibration.
  int64_t start_of(int32_t index) const { return profile_.rate.samples(request_.start_ms(index)); }
  int64_t length_of(int32_t index) const { return profile_.rate.samples(request_.duration_ms(index)); }
  void draw_pass(const Window<uint8_t>& window) const;
  void draw_vibration(int32_t index, const Window<uint8_t>& window) const;
  void draw_transient(int32_t index, const Window<uint8_t>& window) const;

  Profile profile_;
  Request request_;
  Types types_;  // of records that lie whole in the array
  Repetition repetition_;
  int64_t room_;  // samples that the first pass may cover: the pass, or up to the furthest continuous vibration's end
  int64_t earliest_start_ = 0;
  int64_t latest_vibration_start_ = kNever;
};

}  // namespace lrasynth
