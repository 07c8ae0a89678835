// SPDX-License-Identifier: Apache-2.0
// Android's vibration effects: what is refused and where, what they mean, and what becomes of drawings in them.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "design/base/text.h"
#include "design/formats/android.h"
#include "design/formats/on_off.h"

using namespace design;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

Drawing drawing_of(const std::string& xml) {
  Drawing drawing;
  const XmlText tree = read_xml(xml);
  if (!tree.root) {
    drawing.faults.add(tree.fault);
  } else if (is_android(*tree.root)) {
    read_android(*tree.root, drawing);
  }
  return drawing;
}

std::string in_effect(const std::string& xml) { return "<vibration-effect>" + xml + "</vibration-effect>"; }

// "tap 0 100 70; curve 0:0:0 20:50:-50; 1 loss is told"
std::string words_of(const Drawing& drawing) {
  std::vector<std::string> parts;
  for (const DrawnTap& tap : drawing.taps) parts.push_back(text("tap %g %g %g", tap.ms, tap.strength, tap.level));
  for (const DrawnCurve& curve : drawing.curves) {
    std::string& words = parts.emplace_back("curve");
    for (const DrawnPoint& point : curve) {
      words += text(" %g:%g:", point.ms, point.intensity);
      words += point.hz > 0 ? text("%gHz", point.hz) : text("%g", point.offset);
    }
  }
  for (const std::string& line : drawing.losses.lines()) parts.push_back(line);
  for (const std::string& line : drawing.faults.lines("x")) parts.push_back(line);
  std::string words;
  for (const std::string& part : parts) words += (words.empty() ? "" : "; ") + part;
  return words;
}

std::string point(const std::string& intensity, const std::string& sharpness, const std::string& ms) {
  return "<control-point intensity='" + intensity + "' sharpness='" + sharpness + "' durationMs='" + ms + "'/>";
}
std::string basic(const std::string& points) { return "<basic-envelope-effect>" + points + "</basic-envelope-effect>"; }
std::string waveform(const std::string& entries) { return "<waveform-effect>" + entries + "</waveform-effect>"; }
std::string entry(const std::string& ms, const std::string& amplitude) {
  return "<waveform-entry durationMs='" + ms + "' amplitude='" + amplitude + "'/>";
}

std::string nested(size_t depth) {
  std::string xml;
  for (size_t i = 0; i < depth; ++i) xml += "<a>";
  for (size_t i = 0; i < depth; ++i) xml += "</a>";
  return xml;
}

std::string with_attributes(size_t count) {
  std::string xml = "<a";
  for (size_t i = 0; i < count; ++i) xml += text(" a%zu=''", i);
  return xml + "/>";
}

TEST(Xml, RefusesWithThePlace) {
  const std::pair<std::string, std::string> kCases[] = {
      {"", "1:1: is not XML: it has no element"},
      {"<?xml version='1.0'?>\n<!-- none -->\n", "3:1: is not XML: it has no element"},
      {"<a>\n  <b></a>", "2:6: is not XML: </a> does not close <b>"},
      {"<a>\n  <b/>\n", "1:1: is not XML: <a> has no end"},
      {"</a>", "1:1: is not XML: </a> closes nothing"},
      {"<a/><b/>", "1:5: is not XML: something follows behind its end"},
      {"<a/> x", "1:6: is not XML: something follows behind its end"},
      {"<a>é<b/></a>", "1:4: is not XML: text stands where elements are expected"},
      {"<a><!-- é --> x</a>", "1:15: is not XML: text stands where elements are expected"},
      {"{}", "1:1: is not XML: text stands where elements are expected"},
      {"<a", "1:3: is not XML: an attribute or > is expected in <a>"},
      {"< a/>", "1:2: is not XML: a name is expected behind <"},
      {"<a/ >", "1:3: is not XML: an attribute or > is expected in <a>"},
      {"<a></a b>", "1:8: is not XML: > is missing behind a closing name"},
      {"<a b>", "1:5: is not XML: = is missing behind b"},
      {"<a b=c/>", "1:6: is not XML: quotes are missing around the value of b"},
      {"<a b='c\"/>", "1:6: is not XML: the value of b has no end"},
      {"<a b='é<'/>", "1:8: is not XML: < stands in the value of b"},
      {"<a b='c'd='e'/>", "1:9: is not XML: a space is missing before d"},
      {"<a b='c'\n b='d'/>", "2:2: is not XML: b stands there twice"},
      {"<a b='1&amp;'/>", "1:8: has an entity, which is not read"},
      {"<a>&#10;</a>", "1:4: has an entity, which is not read"},
      {"<?xml?><!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "1:8: has a document type, which is not read"},
      {"<a><![CDATA[b]]></a>", "1:4: has a CDATA section, which is not read"},
      {"<!-- <a/>", "1:1: is not XML: a comment has no end"},
      {"<a><?b </a>", "1:4: is not XML: a processing instruction has no end"},
      {std::string("<a>\0</a>", 8), "1:4: is not XML: it holds a NUL character"},
      {"<a b='\xC0\x80'/>", "1:7: is not XML: it is not UTF-8"},
      {"<a b='\xE2\x82", "1:7: is not XML: it is not UTF-8"},
      {nested(33), "1:97: is nested too deeply"},
      {with_attributes(65), "1:442: has more than 64 attributes"},
  };
  for (const auto& [xml, words] : kCases) {
    const XmlText tree = read_xml(xml);
    EXPECT_FALSE(tree.root) << xml;
    EXPECT_EQ(line_of(tree.fault, "x"), "x:" + words) << xml;
  }
  EXPECT_TRUE(read_xml(nested(32)).root);
  EXPECT_TRUE(read_xml(with_attributes(64)).root);
}

TEST(Android, RefusesWithThePlace) {
  const std::pair<std::string, std::string> kCases[] = {
      {"", "1:1: vibration-effect: has no effect"},
      {"<preamble/>", "1:1: vibration-effect: has no effect"},
      {"\n<waveform-effect/>", "2:1: waveform-effect: has no waveform-entry"},
      {waveform("<repeating/>"), "1:36: repeating: has no waveform-entry"},
      {waveform(entry("10", "256")), "1:78: amplitude: must be default or a whole number from 0 to 255, not 256"},
      {waveform(entry("10", "")),
       "1:78: amplitude: must be default or a whole number from 0 to 255, not an empty word"},
      {waveform(entry("-1", "9")), "1:63: durationMs: must be a whole number from 0 to 600000, not -1"},
      {waveform(entry("1.5", "9")), "1:63: durationMs: must be a whole number from 0 to 600000, not 1.5"},
      {waveform("<waveform-entry amplitude='9'/>"), "1:36: durationMs: is missing"},
      {waveform("<waveform-entry durationMs='9'/>"), "1:36: amplitude: is missing"},
      {waveform("<repeating>" + entry("9", "9") + "</repeating>" + entry("9", "9")),
       "1:105: waveform-entry: stands behind what repeats"},
      {waveform("<repeating>" + entry("9", "9") + "</repeating><repeating/>"), "1:105: repeating: stands there twice"},
      {waveform(entry("600000", "9") + "\n" + entry("1", "9") + entry("1", "9")),
       "2:1: waveform-entry: goes on until 600001 ms, longer than 600000"},
      {basic(""), "1:19: basic-envelope-effect: has no control-point"},
      {basic(point("0.5", "0", "9")), "1:67: intensity: must be 0 at the last control-point, not 0.5"},
      {basic(point("1.5", "0", "9")), "1:67: intensity: must be a number from 0 to 1, not 1.5"},
      {basic(point("nan", "0", "9")), "1:67: intensity: must be a number from 0 to 1, not nan"},
      {basic(point("0x1", "0", "9")), "1:67: intensity: must be a number from 0 to 1, not 0x1"},
      {basic(point("1e", "0", "9")), "1:67: intensity: must be a number from 0 to 1, not 1e"},
      {basic(point("0", "1e999", "9")), "1:81: sharpness: must be a number from 0 to 1, not 1e999"},
      {basic(point("0", "-.1", "9")), "1:81: sharpness: must be a number from 0 to 1, not -.1"},
      {basic("<control-point sharpness='0' durationMs='9'/>"), "1:42: intensity: is missing"},
      {basic("<control-point intensity='0' durationMs='9'/>"), "1:42: sharpness: is missing"},
      {"<basic-envelope-effect initialSharpness='2'>" + point("0", "0", "9") + "</basic-envelope-effect>",
       "1:59: initialSharpness: must be a number from 0 to 1, not 2"},
      {"<waveform-envelope-effect><control-point amplitude='0' frequencyHz='0' durationMs='9'/>"
       "</waveform-envelope-effect>",
       "1:86: frequencyHz: must be a number above 0 and at most 10000, not 0"},
      {"<primitive-effect/>", "1:19: name: is missing"},
      {"<primitive-effect name='klick'/>",
       "1:42: name: must be click, thud, spin, quick_rise, slow_rise, quick_fall, tick or low_tick, not klick; did you "
       "mean click?"},
      {"<predefined-effect name='thud'/>", "1:43: name: must be tick, click, heavy_click or double_click, not thud"},
      {"<primitive-effect name='click' scale='inf'/>", "1:56: scale: must be a number from 0 to 1, not inf"},
      {"<primitive-effect name='click' delayType='paus'/>",
       "1:60: delayType: must be pause or relative_start_offset, not paus; did you mean pause?"},
      {"<primitive-effect name='click' delayMs='600000'/><primitive-effect name='click'/>",
       "1:68: primitive-effect: goes on until 600020 ms, longer than 600000"},
      {"<repeating-effect/>", "1:19: repeating-effect: has no preamble and no repeating"},
      {"<repeating-effect><repeating/></repeating-effect>", "1:37: repeating: has no effect"},
      {"<repeating-effect><repeating>" + waveform(entry("9", "9")) + "</repeating><preamble/></repeating-effect>",
       "1:141: preamble: stands behind what repeats"},
  };
  for (const auto& [xml, words] : kCases) {
    EXPECT_THAT(drawing_of(in_effect(xml)).faults.lines("x"), ElementsAre("x:" + words)) << xml;
  }
  EXPECT_EQ(words_of(drawing_of("<vibration-select/>")), "x:1:1: vibration-select: has no vibration-effect");
}

TEST(Android, MeansWhatIsDrawn) {
  const std::pair<std::string, std::string> kCases[] = {
      {waveform(entry("10", "0") + entry("20", "51") + entry("5", "51") + entry("0", "9") + entry("7", "default")),
       "curve 0:0:0 10:0:0 10:20:0 35:20:0 35:100:0 42:100:0"},
      {waveform(entry("10", "255") + "<repeating>" + entry("10", "0") + "</repeating>") +
           "<predefined-effect name='tick'/>",
       "tap 20 50 90; curve 0:100:0 10:100:0 10:0:0 20:0:0; 1 repeating part is played once"},
      {basic(point("0", "0.25", "30") + point(".5", "1", "0") + point("0e0", "0.5", "20")),
       "curve 0:0:-25 30:0:-25 30:50:50 50:0:0"},
      {"<basic-envelope-effect initialSharpness='1'>" + point("0", "0", "9") + "</basic-envelope-effect>",
       "curve 0:0:50 9:0:-50"},
      {"<waveform-envelope-effect initialFrequencyHz='80'><control-point amplitude='1' frequencyHz='120.5' "
       "durationMs='25'/></waveform-envelope-effect>",
       "curve 0:0:80Hz 25:100:120.5Hz"},
      {"<primitive-effect name='click' scale='0.5' delayMs='30'/><primitive-effect name='low_tick' delayMs='5'/>"
       "<primitive-effect name='tick' delayMs='5' delayType='relative_start_offset'/>",
       "tap 30 50 70; tap 55 50 15; tap 60 50 90"},
      {"<primitive-effect name='thud' scale='0.4'/><primitive-effect name='spin'/>",
       "tap 0 40 10; curve 0:40:-40 300:0:-40; curve 300:0:0 375:100:0 450:0:0"},
      {"<primitive-effect name='slow_rise'/><primitive-effect name='quick_rise'/><primitive-effect name='quick_fall'/>",
       "curve 0:0:0 500:100:0; curve 500:0:0 650:100:0; curve 650:100:0 750:0:0"},
      {"<predefined-effect name='double_click'/><predefined-effect name='heavy_click'/><primitive-effect name='click' "
       "delayMs='9' delayType='relative_start_offset'/>",
       "tap 0 100 70; tap 100 100 70; tap 120 100 40; tap 149 100 70"},
      {"<parallel/><repeating-effect><preamble><primitive-effect name='click'/></preamble><repeating>" +
           basic(point("0", "0.5", "9")) + "<a/></repeating></repeating-effect>",
       "tap 0 100 70; curve 20:0:0 29:0:0; 2 unknown elements are left out; 1 repeating part is played once"},
  };
  for (const auto& [xml, words] : kCases) EXPECT_EQ(words_of(drawing_of(in_effect(xml))), words) << xml;
  const std::string tap = in_effect("<predefined-effect name='tick'/>");
  EXPECT_EQ(words_of(drawing_of("\xEF\xBB\xBF<?xml version='1.0'?><vibration-select>" + tap + tap + tap +
                                "</vibration-select><!---->")),
            "tap 0 50 90; 2 other effects are left out of the selection");
}

class Dice {
 public:
  int32_t from(int32_t least, int32_t most) {
    return least + static_cast<int32_t>(random_() % static_cast<uint32_t>(most - least + 1));
  }
  double real(double most) { return most * from(0, 1'000'000) / 1e6; }

  // A drawing that the form can say, or one that it must change.
  Drawing drawing(bool can_be_said) {
    static constexpr double kLevels[] = {90, 15, 70};
    Drawing drawing;
    double ms = from(20, 60);
    for (int32_t left = from(1, 6); left > 0; --left) {
      if (from(0, 1) == 0) {
        const double level = can_be_said ? kLevels[from(0, 2)] : real(100);
        drawing.taps.push_back({ms, real(level == 70 ? 100 : 50), level});
        if (drawing.taps.back().strength <= 50 && level == 70) drawing.taps.back().strength += 50;
        ms += can_be_said ? from(40, 90) : real(60);
        continue;
      }
      DrawnCurve& curve = drawing.curves.emplace_back();
      for (int32_t points = from(can_be_said ? 3 : 2, can_be_said ? 16 : 60); points > 0; --points) {
        curve.push_back({ms, from(0, 4) == 0 ? 0 : real(100), real(100) - 50});
        if (!can_be_said && from(0, 3) == 0) drawing.taps.push_back({ms + real(50), real(100), real(100)});
        ms += can_be_said ? 20 + real(80) : from(0, 5) * real(20);
      }
      if (can_be_said) {
        curve[1].intensity = 50;
        curve.front().intensity = curve.back().intensity = 0;
      }
      ms += can_be_said ? 20 + from(0, 50) : real(50);
    }
    return drawing;
  }

 private:
  std::mt19937 random_{11};
};

// The intensity, or the offset where it sounds, of all curves at a time.
DrawnPoint at(const Drawing& drawing, double ms) {
  for (const DrawnCurve& curve : drawing.curves) {
    for (size_t i = 1; i < curve.size(); ++i) {
      const DrawnPoint& from = curve[i - 1];
      const DrawnPoint& to = curve[i];
      if (from.ms >= to.ms || ms < from.ms || ms > to.ms) continue;
      const double part = (ms - from.ms) / (to.ms - from.ms);
      return {ms, std::lerp(from.intensity, to.intensity, part), std::lerp(from.offset, to.offset, part)};
    }
  }
  return {ms};
}

// Whether a value is among those that the line has within a millisecond.
bool is_near(double value, const Drawing& drawing, double ms, double DrawnPoint::*of) {
  std::vector<double> around;
  for (int32_t i = -8; i <= 8; ++i) around.push_back(at(drawing, ms + i / 8.0).*of);
  const auto [least, most] = std::minmax_element(around.begin(), around.end());
  return value >= *least - 1 && value <= *most + 1;
}

TEST(Android, SaysWhatItCanSayExactly) {
  Dice dice;
  for (int32_t round = 0; round < 300; ++round) {
    const Drawing drawing = dice.drawing(true);
    Losses losses;
    const std::string xml = write_android(drawing, losses);
    const Drawing back = drawing_of(xml);
    ASSERT_THAT(back.faults.lines("x"), IsEmpty()) << xml;
    ASSERT_THAT(losses.lines(), IsEmpty()) << words_of(drawing) << "\n" << xml;
    ASSERT_EQ(back.taps.size(), drawing.taps.size());
    for (size_t i = 0; i < back.taps.size(); ++i) {
      EXPECT_NEAR(back.taps[i].ms, drawing.taps[i].ms, 1) << xml;
      EXPECT_NEAR(back.taps[i].strength, drawing.taps[i].strength, 0.5) << xml;
      EXPECT_EQ(back.taps[i].level, drawing.taps[i].level) << xml;
    }
    const double end_ms = drawing.curves.empty() ? 0 : drawing.curves.back().back().ms;
    for (int32_t ms = 0; ms < end_ms; ms += 3) {
      const DrawnPoint read = at(back, ms);
      EXPECT_TRUE(is_near(read.intensity, drawing, ms, &DrawnPoint::intensity)) << ms << xml;
      EXPECT_TRUE(read.intensity < 1 || is_near(read.offset, drawing, ms, &DrawnPoint::offset)) << ms << xml;
    }
  }
}

// Whatever is drawn, what is written is valid for the platform, and no tap is lost.
TEST(Android, WritesWhatThePlatformTakes) {
  Dice dice;
  for (int32_t round = 0; round < 300; ++round) {
    Drawing drawing = dice.drawing(false);
    drawing.taps.push_back({0, 50, 50});
    Losses losses;
    const std::string xml = write_android(drawing, losses);
    const Drawing back = drawing_of(xml);
    ASSERT_THAT(back.faults.lines("x"), IsEmpty()) << xml;
    const XmlText tree = read_xml(xml);
    for (const XmlElement& effect : tree.root->children) {
      if (effect.name != "basic-envelope-effect") continue;
      EXPECT_LE(effect.children.size(), 16U) << xml;
      for (const XmlElement& child : effect.children) {
        EXPECT_GE(std::stoi(std::string(child.attribute("durationMs")->value)), 20) << xml;
      }
    }
    std::sort(drawing.taps.begin(), drawing.taps.end(), [](const auto& a, const auto& b) { return a.ms < b.ms; });
    ASSERT_EQ(back.taps.size(), drawing.taps.size());
    for (size_t i = 0; i < back.taps.size(); ++i) EXPECT_NEAR(back.taps[i].ms, drawing.taps[i].ms, 1) << xml;
  }
}

TEST(Android, TellsWhatIsLost) {
  DrawnCurve zigzag;
  for (int32_t i = 0; i <= 20; ++i) zigzag.push_back({100.0 * i, i % 20 == 0 ? 0.0 : i == 9 ? 40.0 : 80.0 + i % 2, 0});
  DrawnCurve resting = zigzag;
  resting[3].intensity = 0;
  const std::pair<Drawing, std::string> kCases[] = {
      {{.taps = {{0, 30, 60}, {9, 60, 90}}},
       "tap 0 30 70; tap 9 60 70; 2 taps are given the level of the nearest primitive"},
      {{.curves = {{{40, 80, 0}, {140, 80, 0}}}},
       "curve 0:0:0 40:0:0 60:80:0 120:80:0 140:0:0; 2 hard edges are softened, over 20 ms or more"},
      // Two that touch are one, with a step.
      {{.curves = {{{0, 0, 0}, {100, 80, 0}}, {{100, 40, 0}, {200, 0, 0}}}},
       "curve 0:0:0 100:80:0 120:32:0 200:0:0; 1 point is moved or left out, nearer than 20 ms to others"},
      {{.taps = {{100, 90, 70}}, .curves = {{{0, 0, 0}, {20, 50, 0}, {180, 50, 0}, {200, 0, 0}}}},
       "tap 100 90 70; curve 0:0:0 20:50:0 80:50:0 100:0:0; curve 120:0:0 140:50:0 180:50:0 200:0:0; 1 curve is cut "
       "where taps stand"},
      {{.taps = {{0, 90, 70}},
        .curves = {{{30, 0, 0}, {80, 60, 0}, {130, 0, 0}}, {{150, 0, 0}, {165, 9, 0}, {180, 0, 0}}}},
       "tap 0 90 70; curve 20:0:0 40:12:0 80:60:0 130:0:0; curve 130:0:0 150:0:0 170:9:0 190:0:0; 1 point is moved or "
       "left out, nearer than 20 ms to others; 1 short curve is stretched to 40 ms"},
      {{.taps = {{30, 9, 15}}, .curves = {{{0, 9, 0}, {60, 9, 0}}}},
       "tap 30 9 15; 2 pieces are left out of curves, shorter than 40 ms; 1 curve is cut where taps stand"},
      {{.curves = {zigzag}},
       "curve 0:0:0 100:81:0 200:80:0 300:81:0 400:80:0 500:81:0 600:80:0 700:81:0 800:80:0 880:48:0 900:0:0; curve "
       "900:0:0 920:48:0 1000:80:0 1100:81:0 1200:80:0 1300:81:0 1400:80:0 1500:81:0 1600:80:0 1700:81:0 1800:80:0 "
       "1900:81:0 2000:0:0; 1 pause is put into curves of more than 16 points"},
      // It parts where it rests, and weak points behind that stay.
      {{.curves = {{resting.begin(), resting.begin() + 17}}},
       "curve 0:0:0 100:81:0 200:80:0 300:0:0; curve 300:0:0 400:80:0 500:81:0 600:80:0 700:81:0 800:80:0 900:40:0 "
       "1000:80:0 1100:81:0 1200:80:0 1300:81:0 1400:80:0 1500:81:0 1580:80.2:0 1600:0:0; 1 hard edge is softened, "
       "over 20 ms or more"},
  };
  for (const auto& [drawing, words] : kCases) {
    Losses losses;
    Drawing back = drawing_of(write_android(drawing, losses));
    back.losses = losses;
    EXPECT_EQ(words_of(back), words);
  }
}

TEST(OnOff, IsOnWhereAnythingSounds) {
  Drawing many;
  for (int32_t i = 0; i < 60; ++i) many.taps.push_back({50.0 * i, 1, 0});
  std::string many_times = "[20";
  for (int32_t i = 1; i < 50; ++i) many_times += ",30,20";
  const std::pair<Drawing, std::string> kCases[] = {
      {{}, "[]"},
      {{.taps = {{0, 50, 0}, {30.4, 50, 0}, {50, 0, 0}}}, "[20,10,20]"},
      {{.taps = {{40, 50, 0}}, .curves = {{{10, 0, 0}, {50, 80, 0}, {50, 0, 0}, {70, 0, 0}, {90, 1, 0}}}},
       "[0,10,50,10,20]"},
      {{.curves = {{{10'500, 9, 0}, {31'000, 9, 0}}}}, "[0,10000,0,500,10000,0,10000,0,500]"},
      {{.taps = {{599'000, 9, 0}}}, "[]"},
      {many, many_times + "]"},
  };
  for (const auto& [drawing, json] : kCases) {
    Losses losses;
    EXPECT_EQ(write_on_off(drawing, losses), json + "\n");
    const bool is_cut = &drawing == &kCases[4].first || &drawing == &kCases[5].first;
    EXPECT_EQ(losses.lines().size(), &drawing == &kCases[0].first ? 0U : is_cut ? 2U : 1U) << json;
  }
}

}  // namespace
