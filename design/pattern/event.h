// SPDX-License-Identifier: Apache-2.0
// The events of a pattern, laid out in time. Each kind knows its fields, its records and its end.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "design/base/fault.h"
#include "lrasynth.h"

namespace design {

constexpr int32_t kLongestMs = 600'000;  // of a waveform, an event, a gap

using Record = std::array<int32_t, LRASYNTH_RECORD_LENGTH>;

constexpr bool reads_as_type(int64_t value) { return value == LRASYNTH_CONTINUOUS || value == LRASYNTH_TRANSIENT; }

// A whole number of an event, with its name in files and its range.
template <class Owner>
struct Field {
  const char* name;
  int32_t Owner::*value;
  int32_t least;
  int32_t most;
};

class CurveCompiler;

struct Tap {
  int32_t intensity = 0;  // percent
  int32_t level = 0;
  int32_t driven = kAsAsked;  // percent that the motor is to get, whatever share of the intensity it takes
  int32_t felt = kAsAsked;    // percent that is to be felt, for which the motor is driven

  static constexpr int32_t kAsAsked = -1;
  static constexpr const char* kType = "transient";
  static constexpr const char* kName = "a tap";

  std::string fields_json() const;
  void fit(CurveCompiler& compiler, int32_t start_ms);
  // By a gain of so much, to the nearest percent.
  void scale(double gain, double full_gain);
  int32_t strongest() const { return driven == kAsAsked ? intensity : driven; }
  // What the motor gets, as it is asked for.
  int32_t driven_on(const lrasynth_profile& profile) const;
  bool is_felt() const { return felt != kAsAsked; }
  // As its file says it, as what is felt or otherwise.
  int32_t asked() const { return is_felt() ? felt : strongest(); }
  std::vector<Record> records(int32_t start_ms) const;
  double length_ms(const lrasynth_profile& profile) const;
  // What an event stream says of it.
  int32_t sent_ms() const { return 5; }
  int32_t sent_strength() const { return intensity; }
};

// A record of its own. Its points may lie beyond its duration where it is written as one.
struct Vibration {
  int32_t duration_ms = 0;
  std::array<lrasynth_point, 4> points = {};
  bool is_record = false;

  static constexpr const char* kType = "continuous";
  static constexpr const char* kName = "a vibration";
  static constexpr const char* kRecordType = "record";
  static constexpr const char* kRecordName = "a record";

  // Of a point, from the event's start.
  int32_t point_ms(size_t point) const { return points[point].ms - points[0].ms; }

  std::string fields_json() const;
  void fit(CurveCompiler&, int32_t) {}
  void scale(double gain, double full_gain);
  int32_t strongest() const;
  int32_t asked() const { return strongest(); }
  std::vector<Record> records(int32_t start_ms) const;
  double length_ms(const lrasynth_profile&) const { return duration_ms; }
  int32_t sent_ms() const { return duration_ms; }
  int32_t sent_strength() const { return points[1].intensity; }
};

struct CurvePoint {
  int32_t ms = 0;
  int32_t intensity = 0;  // percent
  int32_t offset = 0;
  int32_t asked_hz = 0;  // of which the motor's nearest offset is taken; 0: an offset is asked for
};

// A vibration of a curve, from the curve's start on.
struct CurvePart {
  int32_t since_ms = 0;
  Vibration vibration = {};
};

// A line through two points or more, which plays as drawn.
struct Curve {
  std::vector<CurvePoint> points = {};
  bool is_felt = false;                 // the intensities of its points are to be felt
  std::vector<CurvePoint> driven = {};  // for which the motor is driven like this
  std::vector<CurvePart> parts = {};    // what plays it, once it is fitted to chip and motor

  static constexpr const char* kType = "curve";
  static constexpr const char* kName = "a curve";

  int32_t point_ms(size_t point) const { return points[point].ms - points[0].ms; }
  // What the motor is driven by.
  std::vector<CurvePoint>& played() { return is_felt ? driven : points; }
  const std::vector<CurvePoint>& played() const { return is_felt ? driven : points; }
  int32_t duration_ms() const { return points.back().ms - points.front().ms; }

  std::string fields_json() const;
  void fit(CurveCompiler& compiler, int32_t start_ms);
  void scale(double gain, double full_gain);
  int32_t strongest() const;
  int32_t asked() const;
  std::vector<Record> records(int32_t start_ms) const;
  double length_ms(const lrasynth_profile&) const { return duration_ms(); }
  int32_t sent_ms() const { return duration_ms(); }
  int32_t sent_strength() const { return strongest(); }
};

using AnyKind = std::variant<Tap, Vibration, Curve>;

struct Event {
  EventName name = {};
  Place place = {};
  int32_t start_ms = 0;
  AnyKind kind = {};

  // Null where it is of another kind.
  const Tap* tap() const { return std::get_if<Tap>(&kind); }
  const Vibration* vibration() const { return std::get_if<Vibration>(&kind); }
  const Curve* curve() const { return std::get_if<Curve>(&kind); }

  const char* type() const;
  // What stands in its file behind the type: "\"start\":0,\"intensity\":80,\"level\":50".
  std::string fields_json() const;
  // Works out what of it depends on the compiler's chip and motor. Nothing below is to be asked for before.
  void fit(CurveCompiler& compiler);
  std::vector<Record> records() const;
  // The vibrations that it consists of, in ascending start; none of a tap.
  std::vector<CurvePart> parts() const;
  double end_ms(const lrasynth_profile& profile) const;
  bool is_felt() const { return tap() != nullptr ? tap()->is_felt() : curve() != nullptr && curve()->is_felt; }
  int32_t sent_ms() const;
  int32_t sent_strength() const;
};

// All of them.
void fit(std::vector<Event>& events, const lrasynth_profile& profile);

// The order in which events play.
inline bool starts_before(const Event& a, const Event& b) { return a.start_ms < b.start_ms; }

// Taps play over everything else, and of two events of one layer the later one.
inline bool in_one_layer(const Event& a, const Event& b) { return (a.tap() == nullptr) == (b.tap() == nullptr); }

}  // namespace design
