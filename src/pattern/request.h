// A long-signal request read as records, wherever they stand in the array.
#pragma once

#include <algorithm>
#include <cstdint>

#include "profile/arithmetic.h"
#include "profile/profile.h"

namespace lrasynth {

constexpr int32_t kContinuous = 4096;
constexpr int32_t kTransient = 4097;
constexpr int32_t kRecordLength = 17;

constexpr bool is_event(int32_t value) { return value == kContinuous || value == kTransient; }

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

  // 32-bit products, as all positions in a pattern.
  int32_t start_samples() const { return wrapping_multiply(samples_per_ms(), start_ms()); }
  int32_t duration_samples() const { return wrapping_multiply(samples_per_ms(), duration_ms()); }

 private:
  const int32_t* fields_;
};

class Request {
 public:
  // A null array and a negative length read as empty.
  Request(const int32_t* values, int32_t length)
      : values_(values), length_(values == nullptr ? 0 : std::max(0, length)) {}

  int32_t length() const { return length_; }
  bool has_record() const { return length_ >= kRecordLength; }
  Record last_record() const { return record(length_ - kRecordLength); }

  // Integers outside the array read as 0.
  int32_t at(int64_t index) const { return index >= 0 && index < length_ ? values_[index] : 0; }

  // Index of the first record of that type at or after `from` that lies whole in the array, or length().
  int32_t find(int32_t type, int32_t from) const {
    for (; from <= length_ - kRecordLength; ++from) {
      if (values_[from] == type) return from;
    }
    return length_;
  }

  Record record(int32_t index) const { return Record(values_ + index); }

 private:
  const int32_t* values_;
  int32_t length_;
};

}  // namespace lrasynth
