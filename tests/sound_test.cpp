// SPDX-License-Identifier: Apache-2.0
// Sound as taps and curves: patterns are rendered and come back, tones keep their hertz, options do what they say.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include "design/advice/piece.h"
#include "design/base/text.h"
#include "design/formats/sound.h"

using namespace design;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr lrasynth_profile kProfile = {0, 24000, 1040, 1};

using Samples = std::vector<float>;

Samples tone(double rate, double hz, double amplitude, double ms) {
  Samples samples(static_cast<size_t>(ms * rate / 1000));
  for (size_t i = 0; i < samples.size(); ++i) {
    const double phase = 2 * std::numbers::pi * hz * static_cast<double>(i) / rate;
    samples[i] = static_cast<float>(amplitude * std::sin(phase));
  }
  return samples;
}

Drawing heard(const Samples& samples, double rate, const SoundOptions& options = {},
              const lrasynth_profile& profile = kProfile, size_t block = 1000) {
  Listener listener(rate, options);
  for (size_t at = 0; at < samples.size(); at += block) {
    listener.hear(std::span(samples).subspan(at, std::min(block, samples.size() - at)));
  }
  return listener.drawing(profile);
}

Samples rendered(const std::string& json, int32_t motor) {
  const PatternReading reading = read_piece({.motor = motor, .chip = 0}, json, "");
  Samples samples;
  for_blocks(reading.piece->waveform, [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) samples.push_back(static_cast<float>(amplitude(code)) / 128);
    return true;
  });
  return samples;
}

// The amplitude of a sine of the same power, around a time.
double envelope(const Samples& samples, double ms) {
  const auto at = static_cast<size_t>(ms * 24);
  double sum = 0;
  double square = 0;
  for (size_t i = at - 240; i < at + 240; ++i) {
    const double sample = i < samples.size() ? static_cast<double>(samples[i]) : 0;
    sum += sample / 480;
    square += sample * sample / 480;
  }
  return std::sqrt(2 * std::max(square - sum * sum, 0.0));
}

// Curves with rests between them, and taps 60 ms apart that are twice as strong as what is around them.
struct Design {
  Drawing drawing;
  std::vector<double> edges;

  Design(unsigned seed, const Tuning& tuning) : random(seed) {
    for (int ms = 50; ms < 3000; ms += up_to(1) * (30 + up_to(300))) {
      DrawnCurve curve;
      for (int left = 2 + up_to(4); left > 0; --left, ms += 40 + up_to(300)) {
        curve.push_back({1.0 * ms, 1.0 * up_to(100), up_to(100) - 50.0});
      }
      ms = static_cast<int>(curve.back().ms);
      edges.insert(edges.end(), {curve.front().ms, curve.back().ms});
      drawing.curves.push_back(curve);
    }
    for (int ms = 0; ms < 3000; ms += 60 + up_to(300)) {
      double around = 7;
      for (int near = ms - 40; near <= ms + 60; ++near) around = std::max(around, amplitude_at(tuning, near));
      if (around < 50)
        drawing.taps.push_back({1.0 * ms, 2 * around + up_to(100 - static_cast<int>(2 * around)), 1.0 * up_to(100)});
    }
  }

 private:
  int up_to(int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); }

  double amplitude_at(const Tuning& tuning, double ms) const {
    const auto full = [&](const DrawnPoint& point) {
      return point.intensity * tuning.full(static_cast<int32_t>(point.offset)) / 128;
    };
    for (const DrawnCurve& curve : drawing.curves) {
      for (size_t i = 1; i < curve.size(); ++i) {
        if (ms < curve[i - 1].ms || ms > curve[i].ms) continue;
        const double share = (ms - curve[i - 1].ms) / (curve[i].ms - curve[i - 1].ms);
        return full(curve[i - 1]) + share * (full(curve[i]) - full(curve[i - 1]));
      }
    }
    return 0;
  }

  std::mt19937 random;
};

bool is_near(const std::vector<double>& times, double ms, double before, double behind) {
  return std::any_of(times.begin(), times.end(), [&](double at) { return at - before <= ms && ms <= at + behind; });
}

std::vector<double> times_of(const std::vector<DrawnTap>& taps) {
  std::vector<double> times;
  times.reserve(taps.size());
  for (const DrawnTap& tap : taps) times.push_back(tap.ms);
  return times;
}

TEST(Sound, PatternsComeBack) {
  for (const int32_t motor : {1040, 832, 9595}) {
    const lrasynth_profile profile = lrasynth_profile_of(0, motor, 1);
    const Tuning tuning(profile);
    int taps = 0;
    int found = 0;
    int wrong = 0;
    int levels = 0;
    int near = 0;
    for (unsigned seed = 0; seed < 6; ++seed) {
      Design design(seed, tuning);
      const Samples samples = rendered(pattern_json(design.drawing), motor);
      Drawing drawing = heard(samples, 24000, {}, profile);
      const std::vector<double> played = times_of(design.drawing.taps);
      const std::vector<double> told = times_of(drawing.taps);
      for (const double ms : played) found += is_near(told, ms, 10, 10) ? 1 : 0;
      for (const double ms : told) wrong += is_near(played, ms, 10, 10) || is_near(design.edges, ms, 15, 15) ? 0 : 1;
      taps += static_cast<int>(played.size());
      const Samples again = rendered(pattern_json(drawing), motor);
      for (int ms = 20; ms < static_cast<int>(samples.size() / 24); ms += 5) {
        const double level = envelope(samples, ms);
        if (level < 0.0126 || is_near(played, ms, 20, 50) || is_near(told, ms, 20, 50)) continue;
        if (is_near(design.edges, ms, 25, 25)) continue;
        ++levels;
        near += std::fabs(20 * std::log10(envelope(again, ms) / level)) <= 3 ? 1 : 0;
      }
    }
    EXPECT_GT(taps, 40);
    EXPECT_GE(found, 0.95 * taps) << motor;
    EXPECT_LE(wrong, 0.05 * taps) << motor;
    EXPECT_GT(levels, 1000);
    EXPECT_GE(near, 0.98 * levels) << motor;
  }
}

TEST(Sound, TonesKeepTheirHertzOnTheMotorsRangeAtAnyRate) {
  const Tuning tuning(kProfile);
  for (const double rate : {1000.0, 8000.0, 22050.0, 44100.0, 384000.0}) {
    for (const double hz : {95.0, 130.0, 250.0, 300.0}) {
      const Drawing drawing = heard(tone(rate, hz, 0.2, 1500), rate);
      ASSERT_THAT(drawing.curves, SizeIs(1)) << hz;
      EXPECT_THAT(drawing.taps, IsEmpty());
      EXPECT_THAT(drawing.curves[0], SizeIs(2)) << rate << ", " << hz;
      for (const DrawnPoint& point : drawing.curves[0]) {
        const auto offset = static_cast<int32_t>(point.offset);
        EXPECT_NEAR(tuning.hertz(offset), hz, 2.5) << rate;
        EXPECT_NEAR(point.intensity / 100 * tuning.full(offset) / 128, 0.2 - 0.01, 0.03) << rate << ", " << hz;
      }
    }
  }
}

// Far from the motor's range its brightness counts, and rises with the frequency.
TEST(Sound, OthersAreAsBrightAsTheySound) {
  double before = -51;
  for (const double hz : {500.0, 1000.0, 2500.0, 6000.0}) {
    const Drawing drawing = heard(tone(48000, hz, 0.2, 400), 48000);
    ASSERT_THAT(drawing.curves, SizeIs(1));
    EXPECT_GT(drawing.curves[0][0].offset, before + 10);
    before = drawing.curves[0][0].offset;
  }
  EXPECT_NEAR(before, 50, 2);
}

// A tone of 200 ms, and two taps that stand 300 and 400 ms behind its start, the second at a fifth of the first.
Samples tone_and_taps() {
  return rendered(R"({"events":[{"type":"curve","start":0,"points":[[0,0,30],[50,100,30],[150,100,30],[200,0,30]]},
    {"type":"transient","start":300,"driven":80,"level":50},{"type":"transient","start":400,"driven":16,"level":50}]})",
                  1040);
}

TEST(Sound, OptionsChooseWhatIsHeard) {
  const Samples samples = tone_and_taps();
  const struct {
    SoundOptions options;
    std::vector<double> taps;  // times and strengths
    size_t curves;
  } rows[] = {
      {{}, {300, 80, 400, 16}, 1},
      {{.curves = false}, {300, 80, 400, 16}, 0},
      {{.taps = false}, {}, 3},
      {{.floor_db = -13}, {300, 80}, 1},
      {{.gain_db = -20}, {300, 8, 400, 1.6}, 1},
      {{.from_ms = 250}, {50, 80, 150, 16}, 0},
      {{.from_ms = 250, .to_ms = 350}, {50, 80}, 0},
      {{.to_ms = 250}, {}, 1},
  };
  for (const auto& [options, taps, curves] : rows) {
    const Drawing drawing = heard(samples, 24000, options);
    EXPECT_THAT(drawing.curves, SizeIs(curves));
    std::vector<double> told;
    for (const DrawnTap& tap : drawing.taps) told.insert(told.end(), {tap.ms, tap.strength});
    ASSERT_EQ(told.size(), taps.size());
    for (size_t i = 0; i < told.size(); ++i) EXPECT_NEAR(told[i], taps[i], 2);
  }
}

TEST(Sound, HearsTheSameInBlocksOfAnySize) {
  const Samples samples = tone_and_taps();
  Drawing whole = heard(samples, 24000, {}, kProfile, samples.size());
  Drawing pieces = heard(samples, 24000, {}, kProfile, 7);
  EXPECT_EQ(pattern_json(whole), pattern_json(pieces));
}

TEST(Sound, FaultsAndLossesAreTold) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float huge = std::numeric_limits<float>::max();
  const struct {
    Samples samples;
    double rate;
    const char* fault;
    const char* loss;
  } rows[] = {
      {{0, 0.5F, nan}, 1000, "f: has a sample that is no number, at 2 ms", ""},
      {{0, -std::numeric_limits<float>::infinity()}, 1000, "f: has a sample that is no number, at 1 ms", ""},
      {{0}, 999, "f: has 999 samples a second: 1000 to 384000 can be heard", ""},
      {{0}, std::nan(""), "f: has nan samples a second: 1000 to 384000 can be heard", ""},
      {Samples(600'001), 1000, "f: lasts longer than 600000 ms", ""},
      {{}, 1000, "", ""},
      {Samples(600'000), 1000, "", ""},
      {tone(1000, 170, 0.001, 100), 1000, "", "dB, below the floor of -40.0"},
      {tone(1000, 170, 0.75, 500), 1000, "",
       "500 ms of it are louder than the motor plays at their frequency, by 10 dB at most"},
      {{huge, -huge, huge}, 1000, "", ""},
  };
  for (const auto& [samples, rate, fault, loss] : rows) {
    Drawing drawing = heard(samples, rate);
    const std::string json = pattern_json(drawing);
    const std::vector<std::string> faults = drawing.faults.lines("f");
    EXPECT_EQ(faults.empty() ? "" : faults[0], fault);
    const std::vector<std::string> losses = drawing.losses.lines();
    EXPECT_THAT(losses.empty() ? "" : losses[0], HasSubstr(loss));
    EXPECT_EQ(json.empty(), !faults.empty());
  }
  EXPECT_THAT(heard(tone_and_taps(), 24000, {.curves = false}, lrasynth_profile_of(0, 81540, 1)).losses.lines(),
              ElementsAre("motor 81540 has no taps: onsets are left out"));
}

}  // namespace
