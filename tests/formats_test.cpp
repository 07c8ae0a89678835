// SPDX-License-Identifier: Apache-2.0
// Files from elsewhere: what they mean, what is wrong with them, and that what goes out comes back.
#include "design/formats/formats.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "design/advice/piece.h"
#include "design/base/text.h"
#include "design/waveform/felt.h"
#include "design/waveform/stretch.h"

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
  return text("{'ParameterCurve':{'ParameterID':'Haptic%sControl','Time':%s,'ParameterCurveControlPoints':[", id,
              time) +
         list + "]}}";
}

TEST(Formats, MeanWhatAhapSays) {
  const std::string half = parameter("Intensity", "0.5");
  const std::vector<Meant> rows = {
      {tap_event("0.1") + "," + tap_event("0.05", half + "," + parameter("Sharpness", "0.9")),
       "T 50 50 90; T 100 100 50"},
      {tap_event("0", parameter("Intensity", "7") + "," + parameter("Sharpness", "-3")), "T 0 100 0"},
      {long_event("1", "0.25", half + "," + parameter("Sharpness", "0.2")), "C 1000: 0 50 -30, 250 50 -30"},
      // Controls before and behind their points, between, and in steps; transients have a sharpness of their own.
      {long_event("0", "1") + "," + control("Intensity", "0.2", {{0, 0.5}, {0.6, 1}}) + "," +
           control("Sharpness", "0.4", {{0, 0.25}, {0.2, -0.25}}) + "," + tap_event("0.5", half),
       "C 0: 0 100 0, 199 100 0, 200 50 0, 399 67 0, 400 67 25, 600 83 -25, 800 100 -25, 1000 100 -25; T 500 38 50"},
      {long_event("0", "0.3") +
           ",{'Parameter':{'Time':0.1,'ParameterID':'HapticIntensityControl','ParameterValue':0.4}}",
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
           control("Intensity", "0.2", {{0.2, 1}, {0.3, 0.2}}) + "," +
           control("Intensity", "0.3", {{0.3, 0.2}, {0.4, 1}}),
       "C 0: 0 0 0, 200 100 0, 300 20 0, 400 100 0", "2 parameter curves are read as timed from the pattern's start"},
      {long_event("0", "0.6") + "," + control("Intensity", "0", {{0, 0}, {0.1, 1}}) + "," +
           control("Intensity", "0.2", {{0.2, 1}, {0.3, 0.2}}),
       "C 0: 0 0 0, 100 100 0, 400 100 0, 500 20 0, 600 20 0"},
      {"{'Event':{'EventType':'AudioCustom'}},{'Event':{'EventType':'AudioContinuous'}},{'Other':1}," +
           tap_event("0", parameter("X", "1") + ",{'ParameterID':'DecayTime','ParameterValue':0.5}"),
       "T 0 100 50", "2 audio events are left out; 1 unknown element is left out; 1 decay is left out"},
      {long_event("0", "0.2", parameter("Intensity", "0")), "", ""},
      {long_event("0", "0.2") + "," + tap_event("0.1", parameter("Intensity", "0")), "C 0: 0 100 0, 200 100 0"},
      {long_event("0", "0.2", parameter("Sharpness", "0")) + "," +
           control("Sharpness", "0", {{0, 0}, {0.1, 0.5}, {0.2, 1}}),
       "C 0: 0 100 -50, 100 100 0, 200 100 50"},
      {long_event("0", "0.2") + "," + long_event("0.1", "0.2", half),
       "C 0: 0 100 0, 200 100 0; C 100: 0 50 0, 200 50 0", "1 curve is played over by another"},
      {tap_event("0") + "," + tap_event("4.096") + "," + long_event("4.097", "0.1"),
       "T 0 100 50; T 4098 100 50; C 4098: 0 100 0, 100 100 0"},
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

TEST(Formats, MeanWhatHapticSays) {
  const std::string emphasis = "{'time':0.2,'amplitude':0.2,'emphasis':{'amplitude':0.7,'frequency':0.1}}";
  const std::vector<Meant> rows = {
      {haptic(amplitudes({{0.1, 0.4}, {0.3, 0.4}})), "C 100: 0 40 0, 200 40 0"},
      {haptic(amplitudes({{0, 0.2}, {0.1, 0.2}}) + "," + emphasis + "," + amplitudes({{0.3, 1}})),
       "C 0: 0 20 0, 200 20 0, 300 100 0; T 200 70 10"},
      // Rest in between, steps, and points that fall together.
      {haptic(amplitudes(
           {{0, 0.5}, {0.1, 0}, {0.4, 0}, {0.4, 0.8}, {0.5, 0.8}, {0.5, 0.2}, {0.6, 0.2}, {0.7, 0}, {9, 0}})),
       "C 0: 0 50 0, 100 0 0; C 400: 0 80 0, 99 80 0, 100 20 0, 200 20 0, 300 0 0"},
      {haptic(amplitudes({{0, 0.1}, {0.1001, 0.9}, {0.1002, 0.1}, {0.1004, 0.3}, {0.2, 0.3}})),
       "C 0: 0 10 0, 99 90 0, 100 30 0, 200 30 0"},
      // Points on the way are left out.
      {haptic(amplitudes({{0, 0}, {0.1, 0.107}, {0.2, 0.193}, {0.3, 0.3}, {0.4, 0.1}})),
       "C 0: 0 0 0, 300 30 0, 400 10 0"},
      {haptic(amplitudes({{0, 0}, {0.1, 0.118}, {0.2, 0.2}})), "C 0: 0 0 0, 100 12 0, 200 20 0"},
      {haptic(amplitudes({{0, 1}, {0.4, 1}}), amplitudes({{0.1, 0.2}, {0.2, 1}, {0.2, 0.4}}, "frequency")),
       "C 0: 0 100 -30, 100 100 -30, 199 100 50, 200 100 -10, 400 100 -10"},
      {haptic("{'time':0,'amplitude':0,'emphasis':{'amplitude':1,'frequency':1}}"), "T 0 100 100"},
      {haptic(amplitudes({{0, 0}, {5, 0}})), "", ""},
      {haptic(amplitudes({{0, 0.5}, {0.0002, 0.5}})), "", "1 curve is left out, shorter than a millisecond"},
  };
  expect_meant(rows, "", "");
}

std::string band(const std::string& type, const std::string& effects) {
  return "{'band_type':'" + type + "','effects':[" + effects + "]}";
}

std::string effect(const std::string& position, const std::string& keyframes, const std::string& more = "") {
  return "{'effect_type':'Basis','position':" + position + "," + more + "'keyframes':[" + keyframes + "]}";
}

std::string keyframe(const std::string& at, const std::string& amplitude, const std::string& hz = "") {
  return "{'relative_position':" + at + (amplitude.empty() ? "" : ",'amplitude_modulation':" + amplitude) +
         (hz.empty() ? "" : ",'frequency_modulation':" + hz) + "}";
}

std::string perception(const std::string& bands, const std::string& channel = "", const std::string& more = "") {
  return "{'perception_modality':'Vibrotactile'," + more + "'channels':[{" + channel + "'bands':[" + bands + "]}]}";
}

TEST(Formats, MeanWhatHjifSays) {
  const std::string two = keyframe("0", "0.5", "120") + "," + keyframe("100", "1", "200");
  const std::string reference = "{'effect_type':'Reference','id':7,'position':50}";
  const std::string library = "'effect_library':[" + effect("0", two, "'id':7,") + "],";
  const std::vector<Meant> rows = {
      {perception(band("VectorialWave", effect("1000", two))), "C 1000: 0 50 120 Hz, 100 100 200 Hz"},
      {perception(band("Curve", effect("0", keyframe("50", "0.2") + "," + keyframe("80", "0.4"))), "'gain':0.5,"),
       "C 50: 0 10 0, 30 20 0"},
      {perception(band("Transient", effect("10", keyframe("5", "1") + "," + keyframe("20", "0.5", "310")))),
       "T 15 100 50; T 30 50 100"},
      // Strength and frequency have keyframes of their own.
      {perception(band("Curve", effect("0", keyframe("0", "0", "100") + "," + keyframe("50", "", "300") + "," +
                                                keyframe("100", "1")))),
       "C 0: 0 0 100 Hz, 50 50 300 Hz, 100 100 300 Hz"},
      {perception(band("VectorialWave", reference), "", library), "C 50: 0 50 120 Hz, 100 100 200 Hz"},
      {"{'perception_modality':'Kinesthetic'}," +
           perception(band("WaveletWave", effect("0", two)) + "," +
                      band("VectorialWave", effect("0", two, "'phase':1,'base_signal':'Square',"))),
       "C 0: 0 50 120 Hz, 100 100 200 Hz",
       "1 perception is left out, being no vibration; 1 wavelet band is left out; 1 effect is taken for a sine; "
       "1 phase is left out"},
      {perception(band("Transient", "")) + "," + perception(band("Transient", effect("0", keyframe("0", "1")))) + "," +
           perception(band("Transient", effect("9", keyframe("0", "1")))),
       "T 0 100 50", "of several channels the first is read, not channel 1 of perception 3"},
      {perception(band("Transient", effect("0", keyframe("0", "0.8"))), "'gain':2,"), "T 0 100 50",
       "1 keyframe is stronger than full with the channel's gain, and cut"},
      {perception(band("Curve", effect("0", keyframe("0", "1")) + ",{'effect_type':'Composite'}")), "",
       "1 effect is left out, having a single keyframe; 1 composite effect is left out"},
  };
  expect_meant(rows, "{'perceptions':[", "]}");
  expect_meant({{perception(band("Transient", effect("24000", keyframe("12000", "1")))), "T 750 100 50"}},
               "{'timescale':48000,'perceptions':[", "]}");
}

struct Wrong {
  std::string file;
  std::string words;
};

void expect_wrong(const std::vector<Wrong>& rows) {
  for (const Wrong& row : rows) {
    EXPECT_EQ(joined(read_file(json_text(row.file), tuning_of()).faults.lines("f")), row.words) << row.file;
  }
}

TEST(Formats, RefuseWithThePlace) {
  const auto in_pattern = [](const std::string& elements) { return "{'Pattern':[\n" + elements + "]}"; };
  const auto in_tap = [&](const std::string& parameters) { return in_pattern(tap_event("0", parameters)); };
  const auto in_curve = [&](const std::string& points) {
    return in_pattern(
        "{'ParameterCurve':{'ParameterID':'HapticIntensityControl','ParameterCurveControlPoints':" + points + "}}");
  };
  expect_wrong({
      {"{'Version':1}", "f:1:1: Pattern: is missing"},
      {"{'Version':'1','Pattern':[]}", "f:1:12: Version: must be a number, not \"1\""},
      {"{'Pattern':{}}", "f:1:12: Pattern: must be a list, not an object"},
      {"{'Pattern':null}", "f:1:12: Pattern: must be a list, not null"},
      {in_pattern("5"), "f:2:1: an element of the pattern must be an object, not 5"},
      {in_pattern("{},[]"), "f:2:4: an element of the pattern must be an object, not a list"},
      {in_pattern("{'Event':[]}"), "f:2:10: Event: must be an object, not a list"},
      {in_pattern("{'Event':{},'Parameter':{}}"), "f:2:1: has Event and Parameter, of which an element has one"},
      {in_pattern("{'Parameter':7}"), "f:2:14: Parameter: must be an object, not 7"},
      {in_pattern("{'ParameterCurve':true}"), "f:2:19: ParameterCurve: must be an object, not true"},
      {in_pattern("{'Event':{'EventType':3}}"), "f:2:23: EventType: must be a text, not 3"},
      {in_pattern(tap_event("'0'")), "f:2:48: Time: must be a number, not \"0\""},
      {in_pattern(tap_event("1e999")), "f:2:48: is not JSON: a number is too large"},
      {in_pattern(tap_event("-1e13")), "f:2:48: Time: is too large: -1e13"},
      {in_pattern(tap_event("700")), "f: goes on until 700000 ms, longer than 600000"},
      {in_pattern(long_event("599", "2")), "f: goes on until 601000 ms, longer than 600000"},
      {in_pattern(long_event("0", "590") +
                  [] {
                    std::string many;
                    for (int i = 0; i < 10; ++i) many += "," + long_event("0", "590");
                    return many;
                  }()),
       "f: has curves of more than 6000000 ms all in all"},
      {in_pattern(long_event("0", "[]")), "f:2:67: EventDuration: must be a number, not a list"},
      {in_tap("1"), "f:2:69: a parameter must be an object, not 1"},
      {in_tap("{'ParameterID':1}"), "f:2:84: ParameterID: must be a text, not 1"},
      {in_tap("{'ParameterID':'HapticIntensity','ParameterValue':'1'}"),
       "f:2:119: ParameterValue: must be a number, not \"1\""},
      {in_pattern("{'Event':{'EventParameters':{}}}"), "f:2:29: EventParameters: must be a list, not an object"},
      {in_curve("3"), "f:2:89: ParameterCurveControlPoints: must be a list, not 3"},
      {in_curve("[3]"), "f:2:90: a control point must be an object, not 3"},
      {in_curve("[{'Time':[]}]"), "f:2:98: Time: must be a number, not a list"},
      {in_curve("[{'ParameterValue':{}}]"), "f:2:108: ParameterValue: must be a number, not an object"},
      {in_pattern("{'Parameter':{'ParameterID':'HapticSharpnessControl','ParameterValue':true}}"),
       "f:2:71: ParameterValue: must be a number, not true"},
      {in_pattern("{'ParameterCurve':{'ParameterID':[]}}"), "f:2:34: ParameterID: must be a text, not a list"},
      {"{'Pattern':[NaN]}", "f:1:13: is not JSON: a value is expected here"},
      {"{'Pattern':[", "f:1:13: is not JSON: a value is expected here"},
      {"{'Pattern':[]}]", "f:1:15: is not JSON: something follows behind its end"},
  });
  const auto at_major = [](const std::string& version) { return "{'signals':{},'version':" + version + "}"; };
  const std::string no_signals = "; f:1:12: continuous: is missing";
  const auto in_point = [](const std::string& point) { return haptic("\n" + point); };
  const auto in_emphasis = [&](const std::string& emphasis) {
    return in_point("{'time':0,'amplitude':0.5,'emphasis':" + emphasis + "}");
  };
  expect_wrong({
      {"{'signals':{}}", "f:1:12: continuous: is missing"},
      {"{'signals':[]}", "f:1:12: signals: must be an object, not a list"},
      {"{'signals':{'continuous':{}}}", "f:1:26: envelopes: is missing"},
      {"{'signals':{'continuous':{'envelopes':{}}}}", "f:1:39: amplitude: is missing"},
      {"{'signals':{'continuous':{'envelopes':[]}}}", "f:1:39: envelopes: must be an object, not a list"},
      {"{'signals':{'continuous':{'envelopes':{'amplitude':{}}}}}", "f:1:52: amplitude: must be a list, not an object"},
      {haptic(""), "f:1:74: amplitude: has no breakpoint"},
      {at_major("1"), "f:1:25: version: must be an object, not 1" + no_signals},
      {at_major("{}"), "f:1:25: major: is missing" + no_signals},
      {at_major("{'major':'1'}"), "f:1:34: major: must be a number, not \"1\"" + no_signals},
      {at_major("{'major':2,'minor':0}"), "f:1:34: major: must be 1, not 2" + no_signals},
      {at_major("{'major':1.5}"), "f:1:34: major: must be 1, not 1.5" + no_signals},
      {in_point("7"), "f:2:1: a breakpoint must be an object, not 7"},
      {in_point("{}"), "f:2:1: time: is missing; f:2:1: amplitude: is missing"},
      {in_point("{'amplitude':0}"), "f:2:1: time: is missing"},
      {in_point("{'time':0}"), "f:2:1: amplitude: is missing"},
      {in_point("{'time':-1,'amplitude':0}"), "f:2:9: time: must be a number from 0 on, not -1"},
      {in_point("{'time':'0','amplitude':0}"), "f:2:9: time: must be a number, not \"0\""},
      {in_point("{'time':1e300,'amplitude':0}"), "f:2:9: time: is too large: 1e300"},
      {in_point("{'time':0,'amplitude':1.01}"), "f:2:23: amplitude: must be a number from 0 to 1, not 1.01"},
      {in_point("{'time':0,'amplitude':-0.1}"), "f:2:23: amplitude: must be a number from 0 to 1, not -0.1"},
      {in_point("{'time':0,'amplitude':null}"), "f:2:23: amplitude: must be a number, not null"},
      {in_point(amplitudes({{1, 0}, {0.5, 0}})), "f:2:34: time: must be at least 1, the one before it, not 0.5"},
      {in_point(amplitudes({{0, 1}, {601, 1}})), "f: goes on until 601000 ms, longer than 600000"},
      {in_emphasis("1"), "f:2:38: emphasis: must be an object, not 1"},
      {in_emphasis("{}"), "f:2:38: amplitude: is missing; f:2:38: frequency: is missing"},
      {in_emphasis("{'amplitude':0.4,'frequency':1}"),
       "f:2:51: amplitude: must be at least its breakpoint's, 0.5, not 0.4"},
      {in_emphasis("{'amplitude':2,'frequency':1}"), "f:2:51: amplitude: must be a number from 0 to 1, not 2"},
      {in_emphasis("{'amplitude':1,'frequency':-1}"), "f:2:65: frequency: must be a number from 0 to 1, not -1"},
      {haptic("{'time':0,'amplitude':1}", "\n{'time':0,'frequency':2}"),
       "f:2:23: frequency: must be a number from 0 to 1, not 2"},
      {haptic("{'time':0,'amplitude':1}", "\n" + amplitudes({{1, 0}, {0, 0}}, "frequency")),
       "f:2:34: time: must be at least 1, the one before it, not 0"},
  });
  const auto in_hjif = [](const std::string& perceptions) { return "{'perceptions':[\n" + perceptions + "]}"; };
  const auto in_transient = [&](const std::string& keyframe) {
    return in_hjif(perception(band("Transient", "\n" + effect("0", keyframe))));
  };
  const auto in_band = [&](const std::string& effects) { return in_hjif(perception(band("Curve", "\n" + effects))); };
  expect_wrong({
      {"{'perceptions':{}}", "f:1:16: perceptions: must be a list, not an object"},
      {"{'perceptions':[],'timescale':0}", "f:1:31: timescale: must be 1 or more, not 0"},
      {"{'perceptions':[],'timescale':'1'}", "f:1:31: timescale: must be a number, not \"1\""},
      {"{'perceptions':[],'timescale':1e99}", "f:1:31: timescale: is too large: 1e99"},
      {in_hjif("1"), "f:2:1: a perception must be an object, not 1"},
      {in_hjif("{'perception_modality':1}"), "f:2:24: perception_modality: must be a text, not 1"},
      {in_hjif("{'perception_modality':'Vibration','channels':1}"), "f:2:47: channels: must be a list, not 1"},
      {in_hjif("{'perception_modality':'Vibration','channels':[1]}"), "f:2:48: a channel must be an object, not 1"},
      {in_hjif("{'perception_modality':'Vibration','channels':[{'bands':1}]}"), "f:2:57: bands: must be a list, not 1"},
      {in_hjif("{'perception_modality':'Vibration','effect_library':{}}"),
       "f:2:53: effect_library: must be a list, not an object"},
      {in_hjif("{'perception_modality':'Vibration','effect_library':[1]}"),
       "f:2:54: an effect must be an object, not 1"},
      {in_hjif("{'perception_modality':'Vibration','effect_library':[{'id':'a'}]}"),
       "f:2:60: id: must be a number, not \"a\""},
      {in_hjif(perception("1," + band("Curve", effect("0", "")))), "f:2:61: a band must be an object, not 1"},
      {in_hjif(perception(band("Curve", "1"), "'gain':'1',")),
       "f:2:59: gain: must be a number, not \"1\"; f:2:104: an effect must be an object, not 1"},
      {in_hjif(perception("{'band_type':1,'effects':[{}]}")), "f:2:74: band_type: must be a text, not 1"},
      {in_band("1"), "f:3:1: an effect must be an object, not 1"},
      {in_band("{'effect_type':1}"), "f:3:16: effect_type: must be a text, not 1"},
      {in_band("{'keyframes':{}}"), "f:3:14: keyframes: must be a list, not an object"},
      {in_band("{'position':-1}"), "f:3:13: position: must be a number from 0 on, not -1"},
      {in_band("{'effect_type':'Reference'}"), "f:3:1: id: is missing"},
      {in_band("{'effect_type':'Reference','id':3}"), "f:3:33: id: is no effect of the library: 3"},
      {in_band(effect("0", "1,2")), "f:3:50: a keyframe must be an object, not 1"},
      {in_band(effect("0", keyframe("'a'", "1"))), "f:3:71: relative_position: must be a number, not \"a\""},
      {in_band(effect("0", "", "'base_signal':7,'phase':'b',")),
       "f:3:51: base_signal: must be a text, not 7; f:3:61: phase: must be a number, not \"b\""},
      {in_transient(keyframe("-5", "1")), "f:3:71: relative_position: must be a number from 0 on, not -5"},
      {in_transient(keyframe("0", "1.5")), "f:3:96: amplitude_modulation: must be a number from 0 to 1, not 1.5"},
      {in_transient(keyframe("0", "null")), "f:3:96: amplitude_modulation: must be a number, not null"},
      {in_transient(keyframe("0", "1", "-3")), "f:3:121: frequency_modulation: must be a number from 0 on, not -3"},
      {in_transient(keyframe("0", "1", "1e99")), "f:3:121: frequency_modulation: is too large: 1e99"},
      {in_transient(keyframe("600001", "1")), "f: goes on until 600001 ms, longer than 600000"},
      {in_transient(keyframe("1e11", "1")), "f: goes on until 1e+11 ms, longer than 600000"},
  });
  expect_wrong({{"<html/>", "f:1:1: html: is no element that vibrates"},
                {" <vibration-effect>", "f:1:2: is not XML: <vibration-effect> has no end"},
                {"[]", "f:1:1: must be an object with events, a list"},
                {"\xEF\xBB\xBF<a/>", "f:1:2: a: is no element that vibrates"}});
}

// What goes out comes back.

TEST(Formats, SayWhatPlays) {
  std::string many;
  std::string as_many;
  for (int i = 0; i < 40; ++i) {
    many += text("%s[%d,%d,0]", i == 0 ? "" : ",", 30 * i, i % 2 == 0 ? 20 : 60);
    as_many += text("%s %d %d 0", i == 0 ? "" : ",", 30 * i, i % 2 == 0 ? 20 : 60);
  }
  const std::string tap = "{'type':'transient','start':0,'driven':50,'level':30}";
  const auto in_file = [](const std::string& events) { return "{'events':[" + events + "]}"; };
  const std::vector<Meant> rows = {
      {"{'loops':3,'interval':100,'events':[" + tap + "]}", "T 0 50 30; T 118 50 30; T 236 50 30"},
      {in_file("{'type':'curve','start':0,'points':[" + many + "]}"), "C 0:" + as_many},
      // A quarter of a sine, of which the line stays within 1.
      {in_file("{'type':'continuous','start':0,'duration':100,'points':[[0,0,0],[90,80,0],[90,80,0],[100,80,0]]}"),
       "C 0: 0 0 0, 30 40 0, 50 61 0, 65 73 0, 85 80 0, 100 80 0", "1 record is turned into curves"},
      {in_file("{'type':'curve','felt':true,'start':0,'points':[[0,60,0],[100,60,0]]}"), "C 0: 0 40 0, 100 40 0"},
      {in_file("{'type':'curve','start':0,'points':[[0,60,0],[300,60,0]]},{'type':'curve','start':100,'points':[[0,20,"
               "0],[100,20,0]]}"),
       "C 0: 0 60 0, 100 60 0; C 100: 0 20 0, 100 20 0; C 200: 0 60 0, 100 60 0",
       "1 vibration is cut where another plays over it"},
      {in_file("{'type':'curve','start':0,'points':[[0,100,-50],[1000,100,50]]},{'type':'curve','start':500,'points':[["
               "0,50,0],[900,50,0]]}"),
       "C 0: 0 100 -50, 500 100 1; C 500: 0 50 0, 900 50 0",
       "1 vibration is cut where another plays over it; 1 point is put into curves and held at full strength, of which "
       "more "
       "plays there"},
      {"{'name':'x','events':[{'type':'transient','start':9,'intensity':0,'level':5}," + tap +
           ",{'type':'curve','start':50,'points':[{'time':0,'intensity':50,'hz':185},[40,50,0]]}]}",
       "T 0 50 30; C 50: 0 50 0, 40 50 0",
       "its names and notes are left out; 1 tap is left out, being silent; 1 point is given the nearest hertz that the "
       "motor plays"},
  };
  for (const Meant& row : rows) {
    const Piece piece = *read_piece({}, json_text(row.file), "f").piece;
    Losses losses;
    const std::string written = format_named("ahap")->write(*piece.score, *piece.source, losses);
    EXPECT_EQ(brief(read_file(written, tuning_of()).events), row.events) << row.file;
    EXPECT_EQ(joined(losses.lines()), row.losses) << row.file;
  }
}

class Dice {
 public:
  int32_t from(int32_t least, int32_t most) {
    return least + static_cast<int32_t>(random_() % static_cast<uint32_t>(most - least + 1));
  }

 private:
  std::mt19937 random_{3};
};

// Curves one after another, and taps between and in them.
std::string random_pattern(Dice& dice) {
  std::string events;
  int32_t ms = dice.from(0, 400);
  for (int32_t left = dice.from(1, 6); left > 0; --left) {
    const int32_t driven = dice.from(1, 100);
    events += text("%s{'type':'transient','start':%d,'driven':%d,'level':%d}", events.empty() ? "" : ",", ms, driven,
                   dice.from(0, 100));
    ms += dice.from(30, 300);
    if (dice.from(0, 2) == 0) continue;
    events += text(",{'type':'curve','start':%d,'points':", ms);
    int32_t point_ms = 0;
    for (int32_t points = dice.from(2, 8); points > 0; --points) {
      const int32_t intensity = dice.from(1, 60);
      events += text("%s[%d,%d,%d]", point_ms == 0 ? "[" : ",", point_ms, intensity, dice.from(-50, 50));
      point_ms += dice.from(25, 200);
    }
    events += "]}";
    ms += dice.from(0, 2) == 0 ? dice.from(0, point_ms) : point_ms + 300;
  }
  return json_text("{'events':[" + events + "]}");
}

struct Played {
  double hz;
  double amplitude;
};

// At a time; nothing where no curve plays.
std::optional<Played> played_at(const lrasynth_profile& profile, std::vector<Event>& events, double ms) {
  std::optional<Played> found;
  for (Event& event : events) {
    if (event.curve() == nullptr || ms < event.start_ms) continue;
    const std::vector<Asked> line = line_of(profile, event);
    for (size_t i = 1; i < line.size(); ++i) {
      const double share = (ms - event.start_ms - line[i - 1].ms) / (line[i].ms - line[i - 1].ms);
      if (!(share >= 0 && share <= 1)) continue;
      found = {std::lerp(line[i - 1].hz, line[i].hz, share),
               std::lerp(line[i - 1].amplitude, line[i].amplitude, share)};
    }
  }
  return found;
}

std::vector<Event> taps_of(const std::vector<Event>& events) {
  std::vector<Event> taps;
  std::copy_if(events.begin(), events.end(), std::back_inserter(taps),
               [](const Event& event) { return event.tap() != nullptr; });
  return taps;
}

TEST(Formats, ComeBackAsTheyWent) {
  Dice dice;
  int compared = 0;
  for (int pass = 0; pass < 200; ++pass) {
    const std::string json = random_pattern(dice);
    const Piece piece = *read_piece({.motor = LRASYNTH_MOTOR_832}, json, "f").piece;
    const lrasynth_profile& profile = piece.score->profile();
    std::vector<Event> events = piece.score->events();
    const std::vector<Event> taps = taps_of(events);
    for (const char* const name : {"json", "ahap", "haptic"}) {
      Losses losses;
      const std::string written = format_named(name)->write(*piece.score, *piece.source, losses);
      if (joined(losses.lines()).find("held at full strength") != std::string::npos) continue;
      PatternFile back = read_file(written, Tuning(profile));
      ASSERT_EQ(joined(back.faults.lines(name)), "") << json << written;
      EXPECT_THAT(back.losses, testing::IsEmpty());
      const std::vector<Event> taps_back = taps_of(back.events);
      ASSERT_EQ(taps_back.size(), taps.size()) << json << written;
      for (size_t i = 0; i < taps.size(); ++i) {
        EXPECT_EQ(taps_back[i].start_ms, taps[i].start_ms) << json << written;
        EXPECT_EQ(taps_back[i].tap()->driven, taps[i].tap()->driven) << json << written;
        EXPECT_EQ(taps_back[i].tap()->level, taps[i].tap()->level) << json << written;
      }
      for (double ms = 0.5; ms < 2000; ms += 7) {
        // Steps take a millisecond, and where a tap stands in a curve, a form may have to bend the line.
        const auto is_near = [&](const Event& event) {
          return std::fabs(event.start_ms - ms) < 2 || std::fabs(event.end_ms(profile) - ms) < 2;
        };
        if (std::any_of(events.begin(), events.end(), is_near)) continue;
        const auto was = played_at(profile, events, ms);
        const auto is = played_at(profile, back.events, ms);
        ASSERT_EQ(was.has_value(), is.has_value()) << ms << json << written;
        if (!was) continue;
        EXPECT_NEAR(was->hz, is->hz, 2.5) << ms << json << written;
        EXPECT_NEAR(was->amplitude, is->amplitude, 3) << ms << json << written;
        ++compared;
      }
    }
  }
  EXPECT_GT(compared, 30'000);
}

// On its own motor what asks to be felt as it was plays as it did, wherever that is felt clearly.
TEST(Formats, AskToBeFeltAsTheyWere) {
  Dice dice;
  int compared = 0;
  for (int pass = 0; pass < 100; ++pass) {
    std::string points;
    const int32_t offset = dice.from(-50, 50);
    for (int32_t ms = 0; ms < 1200; ms += dice.from(150, 400)) {
      points += text("%s[%d,%d,%d]", ms == 0 ? "" : ",", ms, dice.from(0, 100), offset);
    }
    const int32_t driven = dice.from(1, 100);
    const std::string json = json_text(
        text("{'events':[{'type':'transient','start':0,'driven':%d,'level':%d},{'type':'curve','start':100,'points':[",
             driven, dice.from(0, 100)) +
        points + "]}]}");
    const Piece was = *read_piece({.motor = LRASYNTH_MOTOR_1040}, json, "f").piece;
    Losses losses;
    const auto is = read_piece({.motor = LRASYNTH_MOTOR_1040}, felt_json(*was.score, *was.source, {}, losses), "f");
    ASSERT_TRUE(is.piece) << json;
    const Felt before(was.waveform, {});
    const Felt after(is.piece->waveform, {});
    for (size_t i = 0; i < 2; ++i) {
      EXPECT_TRUE(is.piece->score->events()[i].is_felt());
      const double level = before.strongest(was.score->span_of(i));
      if (level < kHardlyFelt || level > kFullyFelt) continue;
      EXPECT_NEAR(after.strongest(was.score->span_of(i)), level, 2) << i << json;
      ++compared;
    }
  }
  EXPECT_GT(compared, 100);
}

}  // namespace
