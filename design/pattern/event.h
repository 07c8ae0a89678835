// SPDX-License-Identifier: Apache-2.0
// The events of a pattern. Each kind knows its name in files, its fields, its record and its end.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <variant>

#include "design/base/fault.h"
#include "lrasynth.h"

namespace design {

constexpr int32_t kLongestMs = 600'000;  // of a waveform, an event, a gap

using Record = std::array<int32_t, LRASYNTH_RECORD_LENGTH>;

// A whole number of an event, with its name in files and its range.
template <class Owner>
struct Field {
  const char* name;
  int32_t Owner::*value;
  int32_t least;
  int32_t most;
};

struct Tap {
  int32_t intensity = 0;  // percent
  int32_t level = 0;

  static constexpr const char* kType = "transient";
  static constexpr const char* kName = "a tap";
  static std::span<const Field<Tap>> fields();

  std::string fields_json() const;
  Record record(int32_t start_ms) const;
  double length_ms(const lrasynth_profile& profile) const;
  // What an event stream says of it.
  int32_t sent_ms() const { return 5; }
  int32_t sent_strength() const { return intensity; }
};

struct Vibration {
  int32_t duration_ms = 0;
  std::array<lrasynth_point, 4> points = {};

  static constexpr const char* kType = "continuous";
  static constexpr const char* kName = "a vibration";
  static std::span<const Field<Vibration>> fields();
  static std::span<const Field<lrasynth_point>> point_fields();

  // Of a point, from the event's start.
  int32_t point_ms(size_t point) const { return points[point].ms - points[0].ms; }

  std::string fields_json() const;
  Record record(int32_t start_ms) const;
  double length_ms(const lrasynth_profile&) const { return duration_ms; }
  int32_t sent_ms() const { return duration_ms; }
  int32_t sent_strength() const { return points[1].intensity; }
};

using AnyKind = std::variant<Tap, Vibration>;

struct Event {
  int32_t number = 0;  // in its file, from 1
  Place place = {};
  int32_t start_ms = 0;
  AnyKind kind = {};

  // Null where it is of the other kind.
  const Tap* tap() const { return std::get_if<Tap>(&kind); }
  const Vibration* vibration() const { return std::get_if<Vibration>(&kind); }

  const char* type() const;
  // What stands in its file behind the type: "\"start\":0,\"intensity\":80,\"level\":50".
  std::string fields_json() const;
  Record record() const;
  // On this chip and motor.
  double end_ms(const lrasynth_profile& profile) const;
  int32_t sent_ms() const;
  int32_t sent_strength() const;
};

// The order in which events play.
inline bool starts_before(const Event& a, const Event& b) { return a.start_ms < b.start_ms; }

inline bool of_one_kind(const Event& a, const Event& b) { return a.kind.index() == b.kind.index(); }

}  // namespace design
