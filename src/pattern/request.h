// SPDX-License-Identifier: Apache-2.0
// A long-signal request read as records, wherever they stand in the array.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>

#include "lrasynth.h"
#include "profile/profile.h"

namespace lrasynth {

// Either type by one comparison, of which compilers make vectors.
constexpr bool is_event(int32_t type) { return (type & ~1) == LRASYNTH_CONTINUOUS; }

static_assert(LRASYNTH_CONTINUOUS % 2 == 0 && LRASYNTH_TRANSIENT == LRASYNTH_CONTINUOUS + 1);

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

  const int32_t* values() const { return values_; }
  int32_t length() const { return length_; }

  // The record that starts at an integer, which lies whole in the array.
  Record record(int32_t index) const {
    assert(index >= 0 && index <= length_ - LRASYNTH_RECORD_LENGTH);
    Record record;
    std::memcpy(&record, values_ + index, sizeof record);
    return record;
  }

  // What says where it lies.
  int32_t type(int32_t index) const { return values_[index]; }
  int32_t start_ms(int32_t index) const { return values_[index + 1]; }
  int32_t duration_ms(int32_t index) const { return values_[index + 4]; }

  // Integers outside the array read as 0.
  int32_t at(int64_t index) const { return index >= 0 && index < length_ ? values_[index] : 0; }

 private:
  const int32_t* values_;
  int32_t length_;
};

// How many of so many integers are types.
int32_t count_types(const int32_t* values, int32_t count);

// The integers of a request that are types. Every one starts a record, wherever it stands; where all of them stand
// whole records apart, as they should, no other integer need be looked at more than once.
class Types {
 public:
  // Those among the first so many integers.
  Types(const Request& request, int32_t places) : values_(request.values()), places_(places) {
    int32_t elsewhere = count_types(values_, places);
    each([&](int32_t /*index*/) { --elsewhere; });
    if (elsewhere > 0) step_ = 1;
  }

  // Visits their indices in ascending order.
  template <class Visit>
  void each(Visit visit) const {
    each(0, places_, visit);
  }

  // The same from one of them on, up to `end`.
  template <class Visit>
  void each(int32_t first, int32_t end, Visit visit) const {
    for (int64_t i = first; i < end; i += step_) {
      if (is_event(values_[i])) visit(static_cast<int32_t>(i));
    }
  }

 private:
  const int32_t* values_;
  int32_t places_;
  int32_t step_ = LRASYNTH_RECORD_LENGTH;
};

// Whether records are missing of which something would be read: of samples, whole ones only.
inline bool lacks_records(const Profile& profile, const lrasynth_pattern& pattern) {
  return pattern.records == nullptr && pattern.length >= (profile.streams() ? 1 : LRASYNTH_RECORD_LENGTH);
}

}  // namespace lrasynth
