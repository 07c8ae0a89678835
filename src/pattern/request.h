// SPDX-License-Identifier: Apache-2.0
// A long-signal request read as records, wherever they stand in the array.
#pragma once

#include <algorithm>
#include <cstdint>

#include "lrasynth.h"

namespace lrasynth {

// The fields of a record that lies whole in the array.
class Record {
 public:
  explicit Record(const int32_t* fields) : fields_(fields) {}

  int32_t type() const { return fields_[0]; }
  int32_t start_ms() const { return fields_[1]; }

  // Of a transient.
  int32_t intensity() const { return fields_[2]; }
  int32_t level() const { return fields_[3]; }

  // Of a continuous vibration. Points count from 0 to 3.
  int32_t duration_ms() const { return fields_[4]; }
  int32_t point_ms(int32_t point) const { return fields_[5 + 3 * point]; }
  int32_t point_intensity(int32_t point) const { return fields_[6 + 3 * point]; }
  int32_t point_offset(int32_t point) const { return fields_[7 + 3 * point]; }

 private:
  const int32_t* fields_;
};

class Request {
 public:
  // A null array and a negative length read as empty.
  Request(const int32_t* values, int32_t length)
      : values_(values), length_(values == nullptr ? 0 : std::max(0, length)) {}

  int32_t length() const { return length_; }
  bool has_record() const { return length_ >= LRASYNTH_RECORD_LENGTH; }
  Record record(int32_t index) const { return Record(values_ + index); }
  Record last_record() const { return record(length_ - LRASYNTH_RECORD_LENGTH); }

  // Visits the records of one type that lie whole in the array, in its order. Every integer of the type's value starts
  // one, wherever it stands.
  template <class Visit>
  void each(int32_t type, Visit visit) const {
    for (int32_t i = 0; i <= length_ - LRASYNTH_RECORD_LENGTH; ++i) {
      if (values_[i] == type) visit(Record(values_ + i));
    }
  }

  // Integers outside the array read as 0.
  int32_t at(int64_t index) const { return index >= 0 && index < length_ ? values_[index] : 0; }

 private:
  const int32_t* values_;
  int32_t length_;
};

}  // namespace lrasynth
