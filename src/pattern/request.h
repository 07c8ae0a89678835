// SPDX-License-Identifier: Apache-2.0
// A long-signal request read as records, wherever they stand in the array.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "lrasynth.h"

namespace lrasynth {

constexpr bool is_event(int32_t type) { return type == LRASYNTH_CONTINUOUS || type == LRASYNTH_TRANSIENT; }

constexpr int32_t kPoints = 4;  // of a continuous vibration's curve

// In the order of the array.
struct Record {
  int32_t type;
  int32_t start_ms;
  int32_t intensity;    // of a transient
  int32_t level;        // of a transient
  int32_t duration_ms;  // of a continuous vibration
  lrasynth_point points[kPoints];
};

static_assert(sizeof(Record) == LRASYNTH_RECORD_LENGTH * sizeof(int32_t));

class Request {
 public:
  // A null array and a negative length read as empty.
  Request(const int32_t* values, int32_t length)
      : values_(values), length_(values == nullptr ? 0 : std::max(0, length)) {}

  int32_t length() const { return length_; }

  // The record that starts at an integer, which lies whole in the array.
  Record record(int32_t index) const {
    Record record;
    std::memcpy(&record, values_ + index, sizeof record);
    return record;
  }

  // Visits the records of one type that lie whole in the array, in its order. Every integer of the type's value starts
  // one, wherever it stands.
  template <class Visit>
  void each(int32_t type, Visit visit) const {
    for (int32_t i = 0; i <= length_ - LRASYNTH_RECORD_LENGTH; ++i) {
      if (values_[i] == type) visit(record(i));
    }
  }

  // Integers outside the array read as 0.
  int32_t at(int64_t index) const { return index >= 0 && index < length_ ? values_[index] : 0; }

 private:
  const int32_t* values_;
  int32_t length_;
};

}  // namespace lrasynth
