// SPDX-License-Identifier: Apache-2.0
// What each kind of event is in a file and in a request.
#include "design/pattern/event.h"

#include "design/base/length.h"
#include "design/base/text.h"

namespace design {

std::span<const Field<Tap>> Tap::fields() {
  static constexpr Field<Tap> kFields[] = {{"intensity", &Tap::intensity, 0, 100}, {"level", &Tap::level, 0, 100}};
  return kFields;
}

std::span<const Field<Vibration>> Vibration::fields() {
  static constexpr Field<Vibration> kFields[] = {{"duration", &Vibration::duration_ms, 1, kLongestMs}};
  return kFields;
}

std::span<const Field<lrasynth_point>> Vibration::point_fields() {
  static constexpr Field<lrasynth_point> kFields[] = {{"time", &lrasynth_point::ms, 0, kLongestMs},
                                                      {"intensity", &lrasynth_point::intensity, 0, 100},
                                                      {"offset", &lrasynth_point::offset, -50, 50}};
  return kFields;
}

std::string Tap::fields_json() const { return text(R"("intensity":%d,"level":%d)", intensity, level); }

Record Tap::record(int32_t start_ms) const {
  Record record;
  lrasynth_put_transient(record.data(), start_ms, intensity, level);
  return record;
}

double Tap::length_ms(const lrasynth_profile& profile) const {
  return 1000.0 * static_cast<double>(tap_length(profile, level).samples) / profile.sample_rate;
}

std::string Vibration::fields_json() const {
  std::string fields = text(R"("duration":%d,"points":)", duration_ms);
  const char* separator = "[";
  for (const lrasynth_point& point : points) {
    fields += text("%s[%d,%d,%d]", separator, point.ms, point.intensity, point.offset);
    separator = ",";
  }
  return fields + "]";
}

Record Vibration::record(int32_t start_ms) const {
  Record record;
  lrasynth_put_continuous(record.data(), start_ms, duration_ms, points.data());
  return record;
}

const char* Event::type() const {
  return std::visit([](const auto& of_kind) { return of_kind.kType; }, kind);
}

std::string Event::fields_json() const {
  return text("\"start\":%d,", start_ms) + std::visit([](const auto& of_kind) { return of_kind.fields_json(); }, kind);
}

Record Event::record() const {
  return std::visit([this](const auto& of_kind) { return of_kind.record(start_ms); }, kind);
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
