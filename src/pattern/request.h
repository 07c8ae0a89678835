// A long-signal request read as records, wherever they stand in the array.
#pragma once

#include <algorithm>
#include <cstdint>

#include "lrasynth.h"

namespace lrasynth {

constexpr bool is_event(int32_t value) { return value == LRASYNTH_CONTINUOUS || value == LRASYNTH_TRANSIENT; }

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

// The records of one type in the order of the array, those that lie whole in it.
class Records {
 public:
  class Iterator {
   public:
    Iterator(const int32_t* at, const Records& records) : at_(at), records_(records) {}
    Record operator*() const { return Record(at_); }
    Iterator& operator++() {
      at_ = records_.next(at_ + 1);
      return *this;
    }
    bool operator!=(const int32_t* end) const { return at_ != end; }

   private:
    const int32_t* at_;
    const Records& records_;
  };

  // `end` is behind the last integer at which a record may start.
  Records(int32_t type, const int32_t* begin, const int32_t* end) : type_(type), begin_(begin), end_(end) {}

  Iterator begin() const { return {next(begin_), *this}; }
  const int32_t* end() const { return end_; }

 private:
  const int32_t* next(const int32_t* from) const;

  int32_t type_;
  const int32_t* begin_;
  const int32_t* end_;
};

class Request {
 public:
  // A null array and a negative length read as empty.
  Request(const int32_t* values, int32_t length)
      : values_(values), length_(values == nullptr ? 0 : std::max(0, length)) {}

  int32_t length() const { return length_; }
  bool has_record() const { return length_ >= LRASYNTH_RECORD_LENGTH; }
  Record last_record() const { return Record(values_ + (length_ - LRASYNTH_RECORD_LENGTH)); }

  Records records(int32_t type) const {
    const int32_t starts = has_record() ? length_ - LRASYNTH_RECORD_LENGTH + 1 : 0;
    return {type, values_, values_ + starts};
  }

  // Integers outside the array read as 0.
  int32_t at(int64_t index) const { return index >= 0 && index < length_ ? values_[index] : 0; }

 private:
  const int32_t* values_;
  int32_t length_;
};

}  // namespace lrasynth
