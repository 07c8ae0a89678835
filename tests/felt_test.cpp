// SPDX-License-Identifier: Apache-2.0
// What is felt, as far as that is estimated: levels over time, and what is said about them.
#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

#include "design/advice/feel.h"
#include "design/advice/piece.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/waveform/felt.h"

using namespace design;
using testing::HasSubstr;

namespace {

constexpr double kPi = std::numbers::pi;

lrasynth_profile motor(int32_t number, int32_t boost = 1) { return lrasynth_profile_of(0, number, boost); }

TEST(Felt, AMotorsGainsImplyItsQuality) {
  const struct {
    lrasynth_profile profile;
    double quality, strongest;  // of steady tones of intensity 100, over all offsets
  } rows[] = {{motor(1040), 2.65, 19.2},
              {motor(81540), 2.71, 19.8},
              {motor(9595), 4.52, 15.9},
              {motor(832), 6.53, 21.0},
              {motor(832, 0), 9.11, 25.8}};
  for (const auto& [profile, quality, strongest] : rows) {
    EXPECT_NEAR(quality_of(profile), quality, 0.011) << name_of(profile);
    double most = 0;
    for (int32_t offset = -50; offset <= 50; ++offset) {
      const double g =
          gain_at(profile, offset) * 128 / kFullScale * tone_g(resolved({}, profile), hertz_at(profile, offset));
      most = std::max(most, tone_level(g, hertz_at(profile, offset)));
    }
    EXPECT_NEAR(most, strongest, 0.15) << name_of(profile);
  }
}

TEST(Felt, ToneThatLastsIsFeltAsTheClosedFormSays) {
  for (const int32_t number : motors()) {
    for (const double hz : {63.0, 80.0, 97.0, 131.0, 150.0, 170.0, 214.0, 235.0, 310.0, 393.0}) {
      const Resonator resonator = resolved({.rated_g = 2}, motor(number));
      FeltMeter meter(resonator, 24000);
      for (int i = 0; i < 24000; ++i) meter.drive(std::sin(2 * kPi * hz * i / 24000));
      const std::vector<double> levels = meter.finish();
      const double r = hz / resonator.hz;
      const double q = resonator.quality;
      const double g = 2 * r * r / (q * std::sqrt((1 - r * r) * (1 - r * r) + r * r / q / q));
      EXPECT_NEAR(levels[150], std::max(0.0, 20 * std::log10(g) - threshold_db(hz)), 0.2) << number << " " << hz;
    }
  }
}

// A frame's spectrum as it is defined, of a drive in which all frequencies are.
TEST(Felt, FramesAreWhatTheyAreDefinedToBe) {
  std::mt19937 random(5);
  const Resonator resonator = {120, 3, 40};
  for (const int32_t rate : {12000, 24000}) {
    const int step = rate / 200;
    const int frame = 8 * step;
    FeltMeter meter(resonator, rate);
    Oscillation motor(resonator, rate);
    std::vector<double> g(static_cast<size_t>(frame / 2));
    const int length = 9 * step + 7;
    for (int i = 0; i < length + 2 * frame; ++i) {
      const double drive = i < length ? static_cast<double>(random() % 1000) / 1000 : 0;
      if (i < length) meter.drive(drive);
      motor.step(drive / 3);
      g.push_back(40 * motor.acceleration(drive / 3));
    }
    const std::vector<double> levels = meter.finish();
    ASSERT_EQ(levels.size(), 9U + 8U + 1U);
    for (size_t i = 0; i < levels.size(); ++i) {
      double sum = 0;
      for (int bin = 1; bin <= 20; ++bin) {
        std::complex<double> wave = 0;
        for (int n = 0; n < frame; ++n) {
          const double window = 0.5 - 0.5 * std::cos(2 * kPi * n / frame);
          wave += window * g[i * static_cast<size_t>(step) + static_cast<size_t>(n)] *
                  std::polar(1.0, -2 * kPi * bin * n / frame);
        }
        sum += std::norm(wave * 4.0 / static_cast<double>(frame)) / 1.5 / std::pow(10, threshold_db(25 * bin) / 10);
      }
      EXPECT_NEAR(levels[i], std::max(0.0, 10 * std::log10(sum)), 1e-6) << rate << " " << i;
    }
  }
}

TEST(Felt, TheStrongestLevelIsFoundInAnyStretch) {
  const Felt felt(tone_waveform(motor(832), 200, 500, 100), {});
  const std::vector<double>& levels = felt.levels();
  ASSERT_GT(levels.size(), 200U);
  std::mt19937 random(3);
  for (int round = 0; round < 500; ++round) {
    const double from = static_cast<double>(random() % 1500) - 100;
    const double to = from + static_cast<double>(random() % 700);
    double most = 0;
    for (size_t i = 0; i < levels.size(); ++i) {
      if (5.0 * static_cast<double>(i) >= from && 5.0 * static_cast<double>(i) <= to) most = std::max(most, levels[i]);
    }
    EXPECT_EQ(felt.strongest({from, to}), most) << from << " " << to;
  }
}

std::string curve(int start, const std::string& points) {
  return text(R"({"type":"curve","start":%d,"points":[%s]})", start, points.c_str());
}

std::string felt_curve(const std::string& points) {
  return R"({"type":"curve","felt":true,"start":0,"points":[)" + points + "]}";
}

std::string tap(int start, int intensity, int level = 60) {
  return text(R"({"type":"transient","start":%d,"intensity":%d,"level":%d})", start, intensity, level);
}

// What is said of an event has that in it; nothing is said of the others.
TEST(Felt, AdviceTellsWhatIsHardlyFelt) {
  const struct {
    std::string events;
    std::vector<const char*> said;  // warnings, then notes
    double rated_g = 1;
  } rows[] = {
      {tap(0, 90), {}},
      {tap(0, 20), {"event 1 at 0 ms: may not be felt: 6.5 dB"}},
      {tap(0, 20), {}, 2},
      {tap(0, 90), {"event 1 at 0 ms: may not be felt: 8.9 dB above threshold, estimated at 0.3 g rated; 10 are"}, 0.3},
      {tap(0, 0), {"is silent"}},
      {curve(0, "[0,80,0],[6,80,0]"), {"event 1 at 0 ms: may not be felt"}},
      // A short one behind a strong one, and between two that are not.
      {curve(0, "[0,90,20],[200,90,20]") + "," + curve(200, "[0,30,0],[9,30,0]"),
       {"event 2 at 200 ms: adds nothing: it is shorter than 10 ms and "}},
      {curve(0, "[0,90,20],[200,90,20]") + "," + curve(200, "[0,30,0],[10,30,0]"), {}},
      {curve(0, "[0,90,20],[200,90,20]") + "," + curve(300, "[0,100,-50],[9,0,-50]"), {}},
      // Ramps: too flat, steep enough, evened out by a sweep, flat between ramps, short.
      {curve(0, "[0,60,0],[300,78,0]"), {"event 1 at 0 ms: from point 1 to 2 it feels constant: from 60 to 78 % its"}},
      {curve(0, "[0,60,0],[300,82,0]"), {}},
      {curve(0, "[0,50,0],[150,60,0],[300,65,0]"), {"event 1 at 0 ms: from point 1 to 3 it feels constant"}},
      {felt_curve("[0,60,0],[400,62,0]"),
       {"event 1 at 0 ms: from point 1 to 2 it feels constant: from 60 to 62 % its"}},
      {felt_curve("[0,60,-50],[400,60,50]"), {}},
      {curve(0, "[0,0,0],[100,70,0],[200,70,0],[300,85,0],[400,0,0]"), {"event 1 at 200 ms: from point 3 to 4 it"}},
      {curve(0, "[0,80,0],[39,90,0]"), {}},
      // Taps of one intensity are meant to be alike.
      {tap(0, 90) + "," + tap(100, 90) + "," + tap(200, 50), {}},
      {tap(0, 90) + "," + tap(100, 80) + "," + tap(200, 40) + "," + tap(300, 45),
       {"event 1 and event 2 can hardly be told apart by strength: taps of 90 and 80 % feel like "}},
  };
  for (const auto& row : rows) {
    const PatternReading reading =
        read_piece({.motor = 1040}, R"({"events":[)" + row.events + "]}", "f", {.rated_g = row.rated_g});
    ASSERT_TRUE(reading.piece) << row.events;
    std::vector<std::string> said;
    for (const Warning& warning : reading.piece->warnings) said.push_back(line_of(warning));
    said.insert(said.end(), reading.file.notes.begin(), reading.file.notes.end());
    ASSERT_EQ(said.size(), row.said.size()) << row.events << testing::PrintToString(said);
    for (size_t i = 0; i < said.size(); ++i) EXPECT_THAT(said[i], HasSubstr(row.said[i])) << row.events;
  }
}

constexpr const char* kFeltEvents = R"(
    {"type":"transient","start":0,"intensity":30,"level":20},{"type":"transient","start":200,"intensity":60,"level":50},
    {"type":"transient","start":400,"intensity":45,"level":60},{"type":"transient","start":600,"intensity":0,"level":60},
    {"type":"curve","start":800,"points":[[0,50,20],[250,50,20]]},
    {"type":"curve","start":1300,"points":[{"time":0,"intensity":35,"hz":240},{"time":250,"intensity":35,"hz":240}]})";

PatternReading felt_file(int32_t motor, int32_t chip, const std::string& events, const Resonator& resonator = {}) {
  return read_piece({.motor = motor, .chip = chip}, R"({"felt":true,"events":[)" + events + "]}", "f", resonator);
}

// A vibration beside the resonance swings over when it begins.
TEST(Felt, AFileFeelsAlikeOnEveryMotor) {
  for (const int32_t number : {832, 1040, 9595}) {
    for (const double rated_g : {1.0, 1.6}) {
      const Resonator resonator = {.rated_g = rated_g};
      const PatternReading reading = felt_file(number, 0, kFeltEvents, resonator);
      ASSERT_TRUE(reading.piece);
      const Felt felt(reading.piece->waveform, resonator);
      const double wanted[] = {6, 12, 9, 0, 10, 7};
      for (size_t i = 0; i < std::size(wanted); ++i) {
        const std::optional<double> level = level_of(*reading.piece->score, felt, i);
        EXPECT_NEAR(level.value_or(-1), wanted[i], i < 4 ? 0.5 : 1.25) << number << " " << rated_g << " " << i;
      }
    }
  }
}

TEST(Felt, ARampRisesEvenly) {
  const struct { int32_t motor, offset; } rows[] = {{832, 0}, {1040, 30}, {81540, 10}, {1040, 0}};
  for (const auto& [number, offset] : rows) {
    for (const int32_t chip : {0, 1}) {
      const PatternReading reading = felt_file(number, chip, curve(0, text("[0,20,%d],[1000,90,%d]", offset, offset)));
      ASSERT_TRUE(reading.piece);
      const std::vector<double> levels = Felt(reading.piece->waveform, {}).levels();
      for (int ms = 25; ms < 975; ms += 5) {
        const double wanted = 4 + 14.0 * ms / 1000;
        EXPECT_NEAR(levels[static_cast<size_t>(ms / 5)], wanted, 2) << number << " " << chip << " " << ms;
      }
    }
  }
}

TEST(Felt, WhatAMotorCannotIsTold) {
  const PatternReading reading =
      felt_file(9595, 0, tap(0, 100, 0) + "," + curve(200, "[0,20,0],[300,100,0],[500,30,0]"));
  ASSERT_TRUE(reading.piece);
  std::vector<std::string> lines;
  for (const Warning& warning : reading.piece->warnings) lines.push_back(line_of(warning));
  ASSERT_EQ(lines.size(), 3U) << testing::PrintToString(lines);
  EXPECT_THAT(lines[0], HasSubstr("event 1 at 0 ms: is to be felt at 100 % and is at "));
  EXPECT_THAT(lines[1], HasSubstr("event 1 at 0 ms: may not be felt"));
  EXPECT_THAT(lines[2], HasSubstr("event 2 at 500 ms: point 2 is to be felt at 100 % and is at "));
  EXPECT_EQ(reading.piece->score->events()[0].tap()->driven, 100);
  EXPECT_EQ(reading.piece->score->events()[1].curve()->strongest(), 100);
}

TEST(Felt, TheNearestWordOnItCounts) {
  const std::string tap_at = R"({"type":"transient","start":0,"level":50,)";
  const std::string group = R"({"type":"group","start":0,"events":[)";
  const struct {
    std::string json;
    std::vector<std::string> faults;
    std::vector<bool> felt = {};
  } rows[] = {
      {R"({"felt":true,"events":[)" + tap_at + R"("intensity":9},)" + tap_at + R"("intensity":9,"felt":false},)" +
           tap_at + R"("driven":9}]})",
       {},
       {true, false, false}},
      {R"({"events":[{"felt":true,)" + group.substr(1) + tap_at + R"("intensity":9}]},)" + curve(0, "[0,9,0],[9,9,0]") +
           "]}",
       {},
       {true, false}},
      {R"({"felt":true,"events":[{"felt":false,)" + group.substr(1) + curve(0, "[0,9,0],[9,9,0]") + "]}]}",
       {},
       {false}},
      {R"({"events":[)" + tap_at + R"("driven":9,"felt":true}]})", {"felt: says nothing of what is driven"}},
      {R"({"events":[)" + tap_at + R"("intensity":9,"felt":1}]})", {"felt: must be true or false, not 1"}},
      {R"({"felt":"yes","events":[)" + tap_at + R"("intensity":9}]})", {"felt: must be true or false, not \"yes\""}},
      {R"({"felt":true,"events":[{"type":"continuous","start":0,"duration":9,"points":[[0,9,0],[1,9,0],[2,9,0],[9,9,0]]}]})",
       {"event 1: felt: is nothing that a record can be; take a curve"}},
      {R"({"felt":true,"events":[{"felt":true,"gain":200,)" + group.substr(1) + tap_at + R"("intensity":51}]}]})",
       {"with the gain of its groups its intensity is 102, more than 100"}},
  };
  for (const auto& row : rows) {
    const PatternReading reading = read_piece({}, row.json, "f");
    const std::vector<std::string> faults = reading.file.faults.lines("f");
    ASSERT_EQ(faults.size(), row.faults.size()) << row.json << testing::PrintToString(faults);
    for (size_t i = 0; i < faults.size(); ++i) EXPECT_THAT(faults[i], HasSubstr(row.faults[i])) << row.json;
    std::vector<bool> felt;
    for (const Event& event : reading.file.events) felt.push_back(event.is_felt());
    EXPECT_TRUE(!faults.empty() || felt == row.felt) << row.json;
  }
}

TEST(Felt, ItsFormsPlayTheSame) {
  const auto codes_of = [](const Piece& piece) {
    std::vector<uint8_t> codes(static_cast<size_t>(piece.waveform.length));
    piece.waveform.read(0, codes);
    return codes;
  };
  for (const int32_t number : {832, 1040}) {
    const PatternReading reading = felt_file(number, 0, kFeltEvents);
    const Score& score = *reading.piece->score;
    const PatternReading again = read_piece({.motor = number}, canonical_json(*reading.file.source), "f");
    const PatternReading flat = read_piece({}, flat_json(score.events(), score.profile(), score.playback()), "f");
    ASSERT_TRUE(again.piece && flat.piece);
    EXPECT_EQ(codes_of(*again.piece), codes_of(*reading.piece)) << number;
    EXPECT_EQ(codes_of(*flat.piece), codes_of(*reading.piece)) << number;
  }
}

}  // namespace
