// SPDX-License-Identifier: Apache-2.0
// What each kind of event is in a file and in a request.
#include "design/pattern/event.h"

#include <algorithm>
#include <cmath>

#include "design/base/length.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/pattern/compile.h"

namespace design {
namespace {

// Multiplied before it is divided, so that halves are halves.
int32_t scaled(int32_t percent, double gain, double full_gain) {
  return static_cast<int32_t>(std::lround(percent * gain / full_gain));
}

template <class Points>
int32_t strongest_of(const Points& points) {
  const auto weaker = [](const auto& a, const auto& b) { return a.intensity < b.intensity; };
  return std::max_element(points.begin(), points.end(), weaker)->intensity;
}

template <class Points, class Write>
std::string points_json(const Points& points, Write write) {
  std::string list = "\"points\":";
  for (const auto& point : points) list += (&point == &*points.begin() ? "[" : ",") + write(point);
  return list + "]";
}

}  // namespace

std::string Tap::fields_json() const {
  if (is_felt()) return text(R"("felt":true,"intensity":%d,"level":%d)", felt, level);
  const bool is_asked = driven == kAsAsked;
  return text(R"("%s":%d,"level":%d)", is_asked ? "intensity" : "driven", strongest(), level);
}

// The weakest intensity that drives the motor as strongly, or as nearly so as there is one. The motor's share grows
// with the intensity.
void Tap::fit(CurveCompiler& compiler, int32_t) {
  constexpr int32_t kMost = 10'000;  // what the weakest share, a tenth, makes full scale
  if (driven == kAsAsked) return;
  const auto drives = [&](int32_t asked) { return driven_intensity(compiler.profile(), level, asked); };
  int32_t least = 0;
  for (int32_t most = kMost; least < most;) {
    const int32_t middle = (least + most) / 2;
    drives(middle) < driven ? least = middle + 1 : most = middle;
  }
  intensity = least;
}

void Tap::scale(double gain, double full_gain) {
  int32_t& strength = is_felt() ? felt : driven == kAsAsked ? intensity : driven;
  strength = scaled(strength, gain, full_gain);
}

int32_t Tap::driven_on(const lrasynth_profile& profile) const {
  return driven == kAsAsked ? driven_intensity(profile, level, intensity) : driven;
}

std::vector<Record> Tap::records(int32_t start_ms) const {
  Record record;
  lrasynth_put_transient(record.data(), start_ms, intensity, level);
  return {record};
}

double Tap::length_ms(const lrasynth_profile& profile) const {
  return 1000.0 * static_cast<double>(tap_length(profile, level).samples) / profile.sample_rate;
}

std::string Vibration::fields_json() const {
  return text(R"("duration":%d,)", duration_ms) + points_json(points, [](const lrasynth_point& point) {
           return text("[%d,%d,%d]", point.ms, point.intensity, point.offset);
         });
}

void Vibration::scale(double gain, double full_gain) {
  for (lrasynth_point& point : points) point.intensity = scaled(point.intensity, gain, full_gain);
}

int32_t Vibration::strongest() const { return strongest_of(points); }

std::vector<Record> Vibration::records(int32_t start_ms) const {
  Record record;
  lrasynth_put_continuous(record.data(), start_ms, duration_ms, points.data());
  return {record};
}

std::string Curve::fields_json() const {
  return std::string(is_felt ? R"("felt":true,)" : "") + points_json(points, [](const CurvePoint& point) {
           if (point.asked_hz == 0) return text("[%d,%d,%d]", point.ms, point.intensity, point.offset);
           return text(R"({"time":%d,"intensity":%d,"hz":%d})", point.ms, point.intensity, point.asked_hz);
         });
}

// A chip that plays events by itself is told of one, of the largest intensity.
void Curve::fit(CurveCompiler& compiler, int32_t start_ms) {
  std::vector<lrasynth_point> drawn;
  if (is_felt && driven.empty()) driven = points;
  for (CurvePoint& point : played()) {
    if (point.asked_hz > 0) point.offset = compiler.tuning().nearest(point.asked_hz);
    drawn.push_back({point.ms, point.intensity, point.offset});
  }
  if (!is_event_stream(compiler.profile())) {
    constexpr double kDenseMs = 10;  // from point to point: where a level is too short to be felt by itself
    const bool is_dense = duration_ms() < kDenseMs * static_cast<double>(drawn.size());
    parts = compiler.parts(start_ms, drawn, is_felt && !is_dense);
    return;
  }
  const lrasynth_point first = {0, strongest(), drawn[0].offset};
  const lrasynth_point last = {duration_ms(), strongest(), drawn[0].offset};
  parts = {{0, {duration_ms(), {first, first, last, last}, true}}};
}

void Curve::scale(double gain, double full_gain) {
  for (CurvePoint& point : points) point.intensity = scaled(point.intensity, gain, full_gain);
}

int32_t Curve::strongest() const { return strongest_of(played()); }
int32_t Curve::asked() const { return strongest_of(points); }

std::vector<Record> Curve::records(int32_t start_ms) const {
  std::vector<Record> records;
  for (const auto& [since_ms, vibration] : parts) records.push_back(vibration.records(start_ms + since_ms)[0]);
  return records;
}

const char* Event::type() const {
  if (vibration() != nullptr && vibration()->is_record) return Vibration::kRecordType;
  return std::visit([](const auto& of_kind) { return of_kind.kType; }, kind);
}

std::string Event::fields_json() const {
  return text("\"start\":%d,", start_ms) + std::visit([](const auto& of_kind) { return of_kind.fields_json(); }, kind);
}

void Event::fit(CurveCompiler& compiler) {
  std::visit([&](auto& of_kind) { of_kind.fit(compiler, start_ms); }, kind);
}

void fit(std::vector<Event>& events, const lrasynth_profile& profile) {
  CurveCompiler compiler(profile);
  for (Event& event : events) event.fit(compiler);
}

std::vector<Record> Event::records() const {
  return std::visit([this](const auto& of_kind) { return of_kind.records(start_ms); }, kind);
}

std::vector<CurvePart> Event::parts() const {
  if (vibration() != nullptr) return {{0, *vibration()}};
  return curve() != nullptr ? curve()->parts : std::vector<CurvePart>();
}

int32_t Event::sent_ms() const {
  return std::visit([](const auto& of_kind) { return of_kind.sent_ms(); }, kind);
}

int32_t Event::sent_strength() const {
  return std::visit([](const auto& of_kind) { return of_kind.sent_strength(); }, kind);
}

double Event::end_ms(const lrasynth_profile& profile) const {
  return start_ms + std::visit([&](const auto& of_kind) { return of_kind.length_ms(profile); }, kind);
}

}  // namespace design
