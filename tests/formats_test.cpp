// SPDX-License-Identifier: Apache-2.0
// Files from elsewhere: what they mean, what is wrong with them, and that what goes out comes back.
#include "design/formats/formats.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "design/advice/piece.h"
#include "design/base/text.h"

using namespace design;
using testing::ElementsAreArray;

namespace {

// Written with ' in place of ".
std::string json_text(std::string text) {
  std::replace(text.begin(), text.end(), '\'', '"');
  return text;
}

Tuning tuning_of(int32_t motor = LRASYNTH_MOTOR_1040) { return Tuning(lrasynth_profile_of(0, motor, 1)); }

// "T 0 50 70; C 100: 0 20 0, 100 80 50"
std::string brief(const std::vector<Event>& events) {
  std::string words;
  for (const Event& event : events) {
    words += words.empty() ? "" : "; ";
    if (const Tap* const tap = event.tap()) words += text("T %d %d %d", event.start_ms, tap->driven, tap->level);
    if (event.curve() == nullptr) continue;
    words += text("C %d:", event.start_ms);
    for (const CurvePoint& point : event.curve()->points) {
      words += text(&point == event.curve()->points.data() ? " %d %d " : ", %d %d ", point.ms, point.intensity);
      words += point.asked_hz > 0 ? text("%d Hz", point.asked_hz) : text("%d", point.offset);
    }
  }
  return words;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string all;
  for (const std::string& line : lines) all += (all.empty() ? "" : "; ") + line;
  return all;
}

struct Meant {
  std::string file;
  std::string events;
  std::string losses = "";
};

void expect_meant(const std::vector<Meant>& rows, const std::string& before, const std::string& behind) {
  for (const Meant& row : rows) {
    const PatternFile file = read_file(json_text(before + row.file + behind), tuning_of());
    EXPECT_EQ(joined(file.faults.lines("f")), "") << row.file;
    EXPECT_EQ(brief(file.events), row.events) << row.file;
    EXPECT_EQ(joined(file.losses), row.losses) << row.file;
  }
}

std::string parameter(const char* id, const char* value) {
  return text("{'ParameterID':'Haptic%s','ParameterValue':%s}", id, value);
}

std::string tap_event(const std::string& time, const std::string& parameters = "") {
  return "{'Event':{'EventType':'HapticTransient','Time':" + time + ",'EventParameters':[" + parameters + "]}}";
}

std::string long_event(const std::string& time, const std::string& duration, const std::string& parameters = "") {
  return "{'Event':{'EventType':'HapticContinuous','Time':" + time + ",'EventDuration':" + duration +
         ",'EventParameters':[" + parameters + "]}}";
}

std::string control(const char* id, const char* time, std::initializer_list<std::pair<double, double>> points) {
  std::string list;
  for (const auto& [at, value] : points) {
    list += text("%s{'Time':%g,'ParameterValue':%g}", list.empty() ? "" : ",", at, value);
  }
  return text("{'ParameterCurve':{'ParameterID':'Haptic%sControl','Time':%s,'ParameterCurveControlPoints':[", id, time) +
         list + "]}}";
}

TEST(Formats, MeanWhatAhapSays) {
  const std::string half = parameter("Intensity", "0.5");
  const std::vector<Meant> rows = {
      {tap_event("0.1") + "," + tap_event("0.05", half + "," + parameter("Sharpness", "0.9")), "T 50 50 90; T 100 100 50"},
      {tap_event("0", parameter("Intensity", "7") + "," + parameter("Sharpness", "-3")), "T 0 100 0"},
      {long_event("1", "0.25", half + "," + parameter("Sharpness", "0.2")), "C 1000: 0 50 -30, 250 50 -30"},
      // Controls before and behind their points, between, and in steps; transients have a sharpness of their own.
      {long_event("0", "1") + "," + control("Intensity", "0.2", {{0, 0.5}, {0.6, 1}}) + "," +
           control("Sharpness", "0.4", {{0, 0.25}, {0.2, -0.25}}) + "," + tap_event("0.5", half),
       "C 0: 0 100 0, 199 100 0, 200 50 0, 399 67 0, 400 67 25, 600 83 -25, 800 100 -25, 1000 100 -25; T 500 38 50"},
      {long_event("0", "0.3") + ",{'Parameter':{'Time':0.1,'ParameterID':'HapticIntensityControl','ParameterValue':0.4}}",
       "C 0: 0 100 0, 99 100 0, 100 40 0, 300 40 0"},
      // A later curve takes over from one that is not at its end.
      {long_event("0", "0.4") + "," + control("Intensity", "0", {{0, 0}, {0.4, 1}}) + "," +
           control("Intensity", "0.2", {{0, 1}, {0.1, 1}}),
       "C 0: 0 0 0, 199 50 0, 200 100 0, 400 100 0"},
      // Sharpness is cut at its ends.
      {long_event("0", "0.4", parameter("Sharpness", "0.75")) + "," + control("Sharpness", "0", {{0, 0}, {0.4, 0.5}}),
       "C 0: 0 100 25, 200 100 50, 400 100 50"},
      // Curves that were cut by an exporter.
      {long_event("0", "0.4") + "," + control("Intensity", "0", {{0, 0}, {0.2, 1}}) + "," +
           control("Intensity", "0.2", {{0.2, 1}, {0.3, 0.2}}) + "," + control("Intensity", "0.3", {{0.3, 0.2}, {0.4, 1}}),
       "C 0: 0 0 0, 200 100 0, 300 20 0, 400 100 0",
       "2 curves that go on from another are read as timed from the pattern's start"},
      {long_event("0", "0.6") + "," + control("Intensity", "0", {{0, 0}, {0.1, 1}}) + "," +
           control("Intensity", "0.2", {{0.2, 1}, {0.3, 0.2}}),
       "C 0: 0 0 0, 100 100 0, 400 100 0, 500 20 0, 600 20 0"},
      {"{'Event':{'EventType':'AudioCustom'}},{'Event':{'EventType':'AudioContinuous'}},{'Other':1}," +
           tap_event("0", parameter("X", "1") + ",{'ParameterID':'DecayTime','ParameterValue':0.5}"),
       "T 0 100 50", "2 audio events are left out; 1 element that is nothing known is left out; 1 decay is left out"},
      {long_event("0", "0.2", parameter("Intensity", "0")), "", "there is nothing in it but rest"},
      {tap_event("0") + "," + tap_event("4.096") + "," + long_event("4.097", "0.1"),
       "T 0 100 50; C 4098: 0 100 0, 100 100 0; T 4098 100 50"},
  };
  expect_meant(rows, "{'Version':1,'Pattern':[", "]}");
}

std::string haptic(const std::string& amplitude, const std::string& frequency = "") {
  return "{'version':{'major':1},'signals':{'continuous':{'envelopes':{" +
         (frequency.empty() ? "" : "'frequency':[" + frequency + "],") + "'amplitude':[" + amplitude + "]}}}}";
}

std::string amplitudes(std::initializer_list<std::pair<double, double>> points, const char* name = "amplitude") {
  std::string list;
  for (const auto& [time, value] : points) {
    list += text("%s{'time':%g,'%s':%g}", list.empty() ? "" : ",", time, name, value);
  }
  return list;
}
