// SPDX-License-Identifier: Apache-2.0
// What is felt, as far as that is estimated: levels over time, and what is said about them.
#include <gmock/gmock.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>

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

}  // namespace
