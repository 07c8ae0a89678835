// SPDX-License-Identifier: Apache-2.0
// What is told of a design: faults, warnings, where events are heard, the motor's response.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "design/advice/jumps.h"
#include "design/advice/piece.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/waveform/response.h"
#include "design/waveform/samples.h"
#include "design/waveform/stretch.h"

using namespace design;
using testing::DoubleNear;
using testing::ElementsAreArray;

namespace {

constexpr double kPi = std::numbers::pi;

Setup setup_of(int32_t chip, int32_t motor, const Playback& playback = {}) {
  return {motor, chip, 1, playback.loops, playback.interval_ms, playback.limit_ms};
}

// Of a file without faults, fitted.
std::vector<Event> events_of(const std::string& json, const lrasynth_profile& profile) {
  std::vector<Event> events = read_pattern(json).events;
  fit(events, profile);
  return events;
}

std::string in_events(const std::string& events) { return "{\"events\": [" + events + "]}"; }

std::string curve(int start, int duration, const std::string& points) {
  return text(R"({"type":"continuous","start":%d,"duration":%d,"points":[%s]})", start, duration, points.c_str());
}

std::string tap(int start, int intensity, int level) {
  return text(R"({"type":"transient","start":%d,"intensity":%d,"level":%d})", start, intensity, level);
}

TEST(Pattern, FaultsHavePlaceAndCause) {
  const std::string fade = "[0,0,0],[10,80,0],[20,80,0],[30,0,0]";
  const struct {
    std::string json;
    std::vector<std::string> lines;
  } rows[] = {
      {"", {"f:1:1: is not JSON: the text is empty"}},
      {"{\"events\"\n:[\n {]}", {"f:3:3: is not JSON: a name in double quotes is expected here"}},
      {in_events(tap(0, 1, 2) + "\n" + tap(0, 1, 2)), {"f:1:67: is not JSON: a comma or ] is missing"}},
      {"{\"events\": [1\n, 2 // a comment, too\n", {"f:2:4: is not JSON: a comma or ] is missing"}},
      {"{\"events\": [1, /* 2, ] } */ ]}", {"f:1:29: is not JSON: a value is expected here"}},
      {"{\"events\": [1 /* ]}", {"f:1:20: is not JSON: a comment has no end"}},
      {"{\"events\" [1]}", {"f:1:10: is not JSON: a colon is missing behind the name"}},
      {"{\"events\": \"\xff\"}", {"f:1:13: is not JSON: a string is not UTF-8"}},
      {"{\"events\": \"a\n\"}", {"f:1:14: is not JSON: a string is not closed, or holds a control character"}},
      {"{\"events\": tru}", {"f:1:15: is not JSON: a value is expected here"}},
      {in_events(tap(0, 1, 2)) + " x", {"f:1:70: is not JSON: something follows behind its end"}},
      {in_events(tap(0, 1, 2)) + std::string("\0x", 2), {"f:1:69: is not JSON: it holds a NUL character"}},
      {"{\"events\":[1e400]}", {"f:1:12: is not JSON: a number is too large"}},
      {std::string(40, '['), {"f:1:33: is nested too deeply"}},
      {"[]", {"f:1:1: must be an object with events, a list"}},
      {"{\"event\":[]}",
       {"f:1:2: event: is no field of a pattern; did you mean events?",
        "f:1:1: must be an object with events, a list"}},
      {R"({"events":{}})", {"f:1:11: must be an object with events, a list"}},
      {"{\"na\\u00e4me\":1,\"events\":[" + tap(0, 1, 2) + "],\"x\\n\":0}",
       {"f:1:2: na\u00e4me: is no field of a pattern; did you mean name?", "f:1:83: x\\x0A: is no field of a pattern"}},
      {in_events("7"), {"f:1:13: event 1: must be an object, not 7"}},
      {in_events("\"\u00e4\",{\"type\":\"\\\"wobble\\\"\"}"),
       {"f:1:13: event 1: must be an object, not \"\u00e4\"",
        "f:1:25: event 2: type: must be transient, continuous, record, curve or group, not \"\\\"wobble\\\"\""}},
      {in_events("{}"), {"f:1:13: event 1: type: is missing"}},
      {in_events(R"({"type":"transiet","start":0})"),
       {"f:1:21: event 1: type: must be transient, continuous, record, curve or group, not \"transiet\"; did you mean "
        "transient?"}},
      {in_events(R"({"type":"transient","start":0,"levle":3,"intensity":"3"})"),
       {"f:1:65: event 1: intensity: must be a whole number from 0 to 100, not \"3\"",
        "f:1:13: event 1: level: is missing", "f:1:43: event 1: levle: is no field of a tap; did you mean level?"}},
      {in_events(R"({"type":"transient","start":-1,"level":1e2,"intensity":18446744073709551616,"colour":[]})"),
       {"f:1:41: event 1: start: must be a whole number from 0 to 600000, not -1",
        "f:1:68: event 1: intensity: must be a whole number from 0 to 100, not 18446744073709551616",
        "f:1:52: event 1: level: must be a whole number from 0 to 100, not 1e2",
        "f:1:89: event 1: colour: is no field of a tap"}},
      {in_events(R"({"type":"transient","start":0,"start":[],"level":null,"intensity":"a)" + std::string(60, 'b') +
                 "\"}"),
       {"f:1:79: event 1: intensity: must be a whole number from 0 to 100, not \"a" + std::string(38, 'b') + "...",
        "f:1:62: event 1: level: must be a whole number from 0 to 100, not null",
        "f:1:43: event 1: start: stands there twice"}},
      {in_events(tap(4096, 1, 1) + ",\n" + tap(4097, 1, 1)),
       {"f:1:41: event 1: start: 4096 would read as the start of an event, take 4095",
        "f:2:29: event 2: start: 4097 would read as the start of an event, take 4098"}},
      {in_events(curve(0, 0, "")),
       {"f:1:55: event 1: duration: must be a whole number from 1 to 600000, not 0",
        "f:1:66: event 1: points: must be a list of four"}},
      {in_events(curve(0, 30, "[0,0,0],[10,80],[20,101,-51],[30,0,0]")),
       {"f:1:76: event 1: point 2: must be [time, intensity, offset]",
        "f:1:88: event 1: point 3, intensity: must be a whole number from 0 to 100, not 101",
        "f:1:92: event 1: point 3, offset: must be a whole number from -50 to 50, not -51"}},
      {in_events(curve(0, 31, "[0,0,0],[20,80,0],[10,80,0],[30,0,0]")),
       {"f:1:87: event 1: point 3, time: must be at least 20, the time of point 2, not 10",
        "f:1:67: event 1: points: times must span the duration, 31 ms, not 30 ms"}},
      {in_events(curve(0, 30, fade) + "," + tap(5, 100, 100)), {}},
  };
  for (const auto& row : rows) {
    const Faults faults = read_pattern(row.json).faults;
    EXPECT_THAT(faults.lines("f"), ElementsAreArray(row.lines)) << row.json;
  }
  std::string many = "1";
  for (int i = 0; i < 29; ++i) many += ",1";
  const std::vector<std::string> lines = read_pattern(in_events(many)).faults.lines("f");
  EXPECT_EQ(lines.size(), 21U);
  EXPECT_EQ(lines.back(), "f: 10 more faults");
}

const std::string kLevel = "[0,80,0],[10,80,0],[20,80,0],[300,0,0]";
const std::string kLoudEnd = "[0,100,-50],[10,100,-50],[20,100,-50],[101,100,-50]";
const std::string kFade = "[0,100,-20],[0,100,-20],[0,100,-20],[500,0,-20]";
const std::string kRough = "[0,90,-50],[0,90,-50],[0,90,-50],[200,90,-50]";

TEST(Pattern, WarningsAreWhatADesignerWouldAvoid) {
  const std::string sends_again =
      "its record does not stand last: take the buffer's size from getLongSignalBufferLength; a limit of ";
  const std::string bed = curve(0, 100, "[0,0,0],[0,80,0],[100,0,0],[100,0,0]");
  const std::string inside = curve(20, 30, "[0,0,0],[10,50,0],[20,50,0],[30,0,0]");
  const struct {
    int motor, chip;
    Playback playback;
    std::string events;
    std::vector<std::string> lines;
  } rows[] = {
      // clang-format off
      {1040, 0, {}, tap(0, 90, 20) + "," + curve(5, 300, kLevel), {}},
      {1040, 0, {}, tap(3, 100, 40), {}},
      {1040, 0, {1, 0, 0}, tap(3, 80, 50), {"event 1 at 3 ms: its last 0.0417 ms are cut; a limit of 20 ms would let "
       "them play"}},
      {1040, 0, {1, 0, 20}, tap(3, 80, 50), {}},
      {1040, 0, {}, tap(3, 80, 50) + "," + tap(3, 100, 40), {"event 1 at 3 ms: never plays: event 2 covers it"}},
      {1040, 0, {}, tap(3, 80, 50) + "," + tap(9, 80, 50), {"event 1 at 9 ms: event 2 plays over it"}},
      {1040, 0, {}, curve(3, 4, "[0,80,0],[1,80,0],[2,80,0],[4,80,0]") + "," + tap(2, 80, 50),
       {"event 1 at 3 ms: never plays: event 2 covers it"}},
      {1040, 0, {}, curve(0, 300, kLevel) + "," + curve(10, 20, "[0,9,0],[1,9,0],[2,9,0],[20,0,0]") + "," + curve(50,
       20, "[0,9,0],[1,9,0],[2,9,0],[20,0,0]") + "," + tap(80, 9, 80),
       {"event 1 at 10 ms: events 2 and 3 play over it"}},
      {1040, 0, {}, curve(2, 100, "[0,80,0],[50,80,50],[50,80,-50],[100,80,-50]"),
       {"event 1 at 2 ms: from point 1 to 2 its carrier reaches 450 Hz, not 310 Hz; to end at 308 Hz set point 2 to "
       "offset 18"}},
      {1040, 0, {}, curve(2, 100, "[0,80,50],[50,0,-50],[100,0,0],[100,0,0]"),
       {"event 1 at 2 ms: from point 1 to 2 its carrier runs through 0 Hz and back up to 130 Hz; to end at 94 Hz set "
       "point 2 to offset 1"}},
      {1040, 0, {}, tap(0, 0, 50) + "," + tap(50, 9, 9) + "," + curve(90, 9, "[0,0,0],[0,0,9],[0,0,0],[9,0,0]"),
       {"event 1 at 0 ms: is silent: its intensity is 0", "event 2 at 50 ms: is silent: level 9 at intensity 9 %, "
       "driven at 0 %, is all rest; intensity 20 is the least that drives the motor",
       "event 3 at 90 ms: is silent: the intensity of all its points is 0"}},
      // Jumps: to rest, into and out of a tap, from pass to pass; not at a point.
      {9595, 0, {}, curve(0, 101, kLoudEnd), {"event 1 at 101 ms: the samples jump by 64, to rest; to end event 1 at "
       "rest set its point 4 to intensity 0"}},
      {9595, 0, {2, 0, -1}, curve(0, 101, kLoudEnd), {"event 1 at 101 ms: the samples jump by 64, from event 1; to "
       "end event 1 at rest set its point 4 to intensity 0"}},
      {9595, 0, {}, curve(0, 101, kLoudEnd) + "," + curve(101, 300, kLevel),
       {"event 2 at 101 ms: the samples jump by 64, from event 1; to end event 1 at rest set its point 4 to intensity "
       "0"}},
      {1040, 0, {}, curve(0, 200, kRough) + "," + tap(5, 60, 50), {"event 2 at 5 ms: the samples jump by 34, from "
       "event 1; with event 2 at 6 ms the jumps would be 24 and 10", "event 1 at 21.04 ms: the samples jump by 62, "
       "from event 2; with event 2 at 6 ms the jumps would be 24 and 10"}},
      // At 12000 samples a second.
      {1040, 1, {}, curve(0, 500, kFade), {"event 1 at 0 ms: from point 3 to 4 its envelope turns back halfway at "
       "12000 samples a second: it ends at amplitude 45, not 0"}},
      {9595, 1, {}, tap(0, 80, 50), {"event 1 at 0 ms: its stored burst is made for 24000 samples a second and lasts "
       "68.67 ms here, not 34.33 ms"}},
      // How a pass ends.
      {1040, 0, {1, 0, 50}, bed + "," + inside, {"event 1 at 20 ms: event 2 plays over it",
       "event 1 at 100 ms: it ends last but " + sends_again + "100 ms would let a record close the pattern"}},
      {1040, 0, {}, tap(4080, 80, 50), {"event 1 at 4096.04 ms: it ends last, at 4097 ms, which would read as an "
       "event: the pattern ends at 4098 ms; start it 2 ms earlier to end before"}},
      // Event streams.
      {1040, 11, {2, 0, -1}, tap(0, 0, 50) + "," + curve(65536, 65537, "[0,9,0],[0,0,0],[0,0,0],[65537,0,0]"),
       {"event 1 at 0 ms: is silent: its intensity is 0", "the total time, 262156 ms, is told in 16 bits and becomes "
       "12 ms; 65535 ms is the most", "event 2 at 65536 ms: the time since the event before, 65536 ms, is told in 16 "
       "bits and becomes 0 ms; 65535 ms is the most", "event 2 at 65536 ms: its duration, 65537 ms, is told in 16 "
       "bits and becomes 1 ms; 65535 ms is the most", "event 2 at 65536 ms: is silent: the intensity of point 2, "
       "which is sent, is 0"}},
      {1040, 11, {}, tap(0, 1, 50) + "," + curve(65535, 65535, "[0,9,0],[0,9,0],[0,0,0],[65535,0,0]"),
       {"the total time, 131075 ms, is told in 16 bits and becomes 3 ms; 65535 ms is the most"}},
      // clang-format on
  };
  for (const auto& row : rows) {
    const PatternReading reading = read_piece(setup_of(row.chip, row.motor, row.playback), in_events(row.events), "f");
    ASSERT_TRUE(reading.piece) << row.events;
    std::vector<std::string> lines;
    for (const Warning& warning : reading.piece->warnings) lines.push_back(line_of(warning));
    EXPECT_EQ(lines, row.lines) << row.events;
  }
}

TEST(Pattern, WarningsThatAreAlikeAreToldOnce) {
  std::vector<Warning> warnings;
  for (int32_t i = 1; i <= 1200; ++i) warnings.push_back({{i}, 2.0 * i, "is loud"});
  for (int32_t i = 1; i <= 5; ++i) warnings.push_back({{i}, 3, text("jumps by %d", 30 + i), "jumps"});
  for (int32_t i = 0; i < 4; ++i) warnings.push_back({{7}, 3, text("falls by %d", 30 + i / 2), "falls"});
  const std::vector<std::string> few = {"in 1,200 events, first event 1 at 2 ms: is loud",
                                        "in 5 events, first event 1 at 3 ms: jumps by 31; the others likewise",
                                        "event 7 at 3 ms: falls by 30 (2 places)",
                                        "event 7 at 3 ms: falls by 31 (2 places)"};
  EXPECT_EQ(lines_of(warnings), few);
  for (int32_t i = 1; i <= 30; ++i) warnings.push_back({{i}, 4, text("reaches %d Hz", i)});
  EXPECT_EQ(lines_of(warnings).size(), kMostWarningsListed + 1);
  EXPECT_EQ(lines_of(warnings).back(), "and 14 more warnings");
  EXPECT_EQ(lines_of(warnings, 1).back(), "and 39 more warnings") << "not lines";
}

// What no limit allows is a fault in words, never a length.
TEST(Pattern, PassesNeedARecordThatClosesThem) {
  const std::string nested = in_events(curve(0, 100, "[0,0,0],[0,80,0],[100,0,0],[100,0,0]") + "," +
                                       curve(20, 30, "[0,0,0],[10,50,0],[20,50,0],[30,0,0]"));
  for (const int32_t limit_ms : {20, 99, 100}) {
    for (const int32_t loops : {1, 2}) {
      const PatternReading reading = read_piece(setup_of(0, LRASYNTH_MOTOR_1040, {loops, 7, limit_ms}), nested, "f");
      ASSERT_EQ(reading.piece.has_value(), loops == 1 || limit_ms == 100);
      const int64_t whole = int64_t{24} * (loops == 1 ? 100 : 207);
      if (reading.piece) {
        EXPECT_EQ(reading.piece->waveform.length, whole);
      } else {
        EXPECT_EQ(
            reading.file.faults.lines("f").at(0),
            text(
                "f:1:13: event 1: ends last, at 100 ms, where passes need a record that closes them: the limit must be "
                "at least 100, not %d",
                limit_ms));
      }
    }
  }
}

// Where nothing has to be moved or added, the request is the file's.
TEST(Pattern, EndsWhereItsLastEventEnds) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  for (const int duration : {95, 96, 97, 98}) {
    const std::string points = text("[0,0,0],[0,0,0],[%d,0,0],[%d,0,0]", duration, duration);
    const Score score(profile, {}, events_of(in_events(curve(4000, duration, points)), profile));
    EXPECT_EQ(score.length(), 24 * (4000 + duration));
    EXPECT_EQ(score.request().integers.size(), LRASYNTH_RECORD_LENGTH);
  }
}

TEST(Tap, FalsePeaksAreFound) {
  for (const int32_t motor : {LRASYNTH_MOTOR_832, LRASYNTH_MOTOR_1040, LRASYNTH_MOTOR_9595}) {
    const lrasynth_profile profile = lrasynth_profile_of(0, motor, 1);
    int levels = 0;
    for (int32_t level = 0; level <= 100; ++level) {
      for (const Warning& warning : warnings_of_tap(profile, level, 100, false)) {
        EXPECT_TRUE(line_of(warning).ends_with("; intensity 99 has none"));
        ++levels;
      }
      EXPECT_TRUE(warnings_of_tap(profile, level, 99, false).empty());
    }
    EXPECT_EQ(levels, motor == LRASYNTH_MOTOR_1040 ? 39 : 0);
  }
  const Piece tone = tone_piece(lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1), 100, 4, 127);
  ASSERT_EQ(tone.warnings.size(), 1U);
  EXPECT_EQ(line_of(tone.warnings[0]),
            "2 positive peaks are coded as 128, which a driver reads as -128; amplitude 126 has none");
}

// No carrier moves by 36 from one sample to the next: where the samples do, events or stretches meet. A code of 128 is
// a peak with the wrong sign.
void expect_all_jumps(const Score& score, const std::vector<uint8_t>& played) {
  constexpr int kNoCarrier = 36;
  std::vector<int> told(played.size() + 1, -1);
  for (const Jump& jump : jumps_of(score)) told[static_cast<size_t>(jump.sample)] = jump.height;
  const auto at = [&](size_t i) { return i < played.size() ? amplitude(played[i]) : 0; };
  const auto pass = static_cast<size_t>(score.pass_ms() * score.profile().sample_rate / 1000);
  for (size_t i = 1; i <= pass; ++i) {
    const int height = std::abs(at(i) - at(i - 1));
    if (told[i] >= 0) {
      ASSERT_EQ(told[i], height) << i;
    } else if (at(i) != -128 && at(i - 1) != -128) {
      ASSERT_LT(height, kNoCarrier) << i;
    }
  }
}

// Where an event is heard stand its samples, elsewhere rest: in every pass.
TEST(Score, EventsAreHeardWhereNothingPlaysOverThem) {
  std::mt19937 random(1);
  const auto up_to = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
  for (int round = 0; round < 200; ++round) {
    std::string events;
    for (int i = up_to(5); i >= 0; --i) {
      const int duration = 1 + up_to(80);
      const std::string points =
          text("[7,%d,%d],[%d,%d,%d],[%d,90,40],[%d,%d,0]", up_to(100), up_to(50), 7 + duration / 3, up_to(100),
               -up_to(50), 7 + duration / 2, 7 + duration, up_to(100));
      const std::string kinds[] = {curve(up_to(120), duration, points), tap(up_to(120), up_to(100), up_to(100)),
                                   text(R"({"type":"curve","start":%d,"points":[%s]})", up_to(120), points.c_str())};
      events += (events.empty() ? "" : ",") + kinds[up_to(2)];
    }
    const lrasynth_profile profile = lrasynth_profile_of(up_to(1), motors()[static_cast<size_t>(up_to(2))], 1);
    const Score score(profile, {2, 3, LRASYNTH_NO_LIMIT}, events_of(in_events(events), profile));
    std::vector<uint8_t> expected(static_cast<size_t>(score.length()));
    std::vector<int> heard_times(expected.size());
    for (size_t i = 0; i < score.events().size(); ++i) {
      const Waveform alone = event_waveform(profile, score.events()[i]);
      std::vector<uint8_t> codes(static_cast<size_t>(alone.length));
      alone.read(0, codes);
      for (const Span& heard : score.heard(i)) {
        for (const double pass_ms : {0.0, score.pass_start_ms(1)}) {
          const Span span = heard.moved(-score.events()[i].start_ms);
          const int64_t from = std::llround(span.from * profile.sample_rate / 1000);
          const int64_t to = std::llround(span.to * profile.sample_rate / 1000);
          const int64_t at = std::llround((heard.from + pass_ms) * profile.sample_rate / 1000);
          std::copy(codes.begin() + from, codes.begin() + to, expected.begin() + at);
          std::for_each_n(heard_times.begin() + at, to - from, [](int& times) { ++times; });
        }
      }
    }
    std::vector<uint8_t> played(expected.size());
    score.read(0, played);
    ASSERT_EQ(played, expected) << events;
    ASSERT_LE(*std::max_element(heard_times.begin(), heard_times.end()), 1) << events;
    expect_all_jumps(score, played);
  }
}

// Counted in the samples: the last 100 ms of a second's sweep.
TEST(Stretch, TheCarrierReachesWhatIsTold) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  for (const int offset : {50, 20, -20}) {
    const std::string points = text("[0,100,0],[1000,100,%d],[1000,0,0],[1000,0,0]", offset);
    const Event event = events_of(in_events(curve(0, 1000, points)), profile).at(0);
    const std::vector<Stretch> stretches = stretches_of(profile, event);
    ASSERT_EQ(stretches.size(), 1U);
    std::vector<uint8_t> codes(2400);
    event_waveform(profile, event).read(24000 - 2400, codes);
    int crossings = 0;
    for (size_t i = 1; i < codes.size(); ++i) crossings += (amplitude(codes[i]) >= 0) != (amplitude(codes[i - 1]) >= 0);
    EXPECT_NEAR(crossings * 5.0, stretches[0].hz_at(950), 10) << offset;
    EXPECT_EQ(stretches[0].hz_at(1000), stretches[0].reached_hz());
  }
}

// The peak of each 10 ms beside what the envelope says.
TEST(Stretch, TheEnvelopeIsWhatIsTold) {
  for (const int32_t chip : {0, 1}) {
    const lrasynth_profile profile = lrasynth_profile_of(chip, LRASYNTH_MOTOR_1040, 1);
    const Event event = events_of(in_events(curve(0, 500, kFade)), profile).at(0);
    const std::vector<Stretch> stretches = stretches_of(profile, event);
    ASSERT_EQ(stretches.size(), 1U);
    EXPECT_NEAR(stretches[0].reached_amplitude(), chip == 1 ? stretches[0].from_amplitude : 0, 0.001);
    std::vector<uint8_t> codes(static_cast<size_t>(profile.sample_rate / 100));
    for (int ms = 10; ms < 490; ms += 10) {
      event_waveform(profile, event).read(profile.sample_rate / 1000 * ms, codes);
      int peak = 0;
      for (const uint8_t code : codes) peak = std::max(peak, std::abs(amplitude(code)));
      EXPECT_NEAR(peak, std::max(stretches[0].amplitude_at(ms), stretches[0].amplitude_at(ms + 10)), 2.5)
          << chip << " " << ms;
    }
  }
}

TEST(Response, AStepGivesTheClosedForm) {
  constexpr double kRate = 12000;
  for (const double quality : {0.7, 5.0, 40.0}) {
    const double w = 2 * kPi * 130;
    const double d = 1 / (2 * quality);
    const double damped = w * std::sqrt(1 - d * d);
    Oscillation motor({130, quality}, kRate);
    for (int i = 1; i < 2000; ++i) {
      const double t = i / kRate;
      const double swing = std::cos(damped * t) + d * w / damped * std::sin(damped * t);
      ASSERT_THAT(motor.step(1), DoubleNear(1 - std::exp(-d * w * t) * swing, 1e-9)) << quality << " " << i;
    }
  }
}

// x(t) ~ Q (1 - e^(-wt/2Q)), so that 90 % take ln 10 of 2Q/w and the way from 90 % down to 10 % ln 9.
TEST(Response, AToneAtResonanceGivesTheClosedForm) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_832, 1);
  const Waveform tone = tone_waveform(profile, 235, 470 * 2, 127);
  const Motion motion(tone, {0, 20});
  const Response& response = motion.response();
  const auto columns = motion.columns({0, 2000}, 100);
  const double unit_ms = 1000 * 20 / (kPi * 235);
  EXPECT_NEAR(response.resonator.hz, 235, 0);
  EXPECT_NEAR(response.peak, 1, 0.01);
  EXPECT_NEAR(response.rise_ms, unit_ms * std::log(10), 1.5);
  EXPECT_NEAR(response.ring_down_ms, unit_ms * std::log(9), 1.5);
  EXPECT_NEAR(response.felt_ms, 2000 + unit_ms * std::log(10), 1.5);
  EXPECT_NEAR(response.effective, std::sqrt(0.5 * (1 - 1.5 * unit_ms / 2000)), 0.01);
  EXPECT_NEAR(columns[50].high, 1, 0.01);
  EXPECT_NEAR(columns[50].low, -1, 0.01);
  EXPECT_NEAR(columns[1].high, 1 - std::exp(-39 / unit_ms), 0.02);
}

// A motor far below the drive swings farthest when the drive is over.
TEST(Response, ThePeakMayComeAfterTheEnd) {
  const lrasynth_profile profile = lrasynth_profile_of(1, LRASYNTH_MOTOR_832, 1);
  const Waveform tap = tap_waveform(profile, 34, 93);
  const Motion motion(tap, {50, 50});
  double highest = 0;
  for (const auto& column : motion.columns({0, 60}, 60)) highest = std::max({highest, column.high, -column.low});
  EXPECT_EQ(motion.response().peak, highest);
  EXPECT_NEAR(highest, 0.035, 0.0005);
}

TEST(Text, ForeignBytesAreShownSafely) {
  const struct {
    std::string raw, shown;
  } rows[] = {
      {"a\u00e4\u20ac\U0001F600", "a\u00e4\u20ac\U0001F600"},
      {std::string("\0\x1b[0m\x7f\xc2\x85", 8), "\\x00\\x1B[0m\\x7F\\xC2\\x85"},
      {"\xff\xc0\x80\xed\xa0\x80\xf4\x90\x80\x80\xe2\x82",
       "\\xFF\\xC0\\x80\\xED\\xA0\\x80\\xF4\\x90\\x80\\x80\\xE2\\x82"},
      {"\xe0\x9f\xbf\xf0\x8f\xbf\xbf\xf5", "\\xE0\\x9F\\xBF\\xF0\\x8F\\xBF\\xBF\\xF5"},
      {"\xef\xbf\xbd\xef\xbf\xbe", "\xef\xbf\xbd\\xEF\\xBF\\xBE"},
      {std::string(40, 'x'), std::string(40, 'x')},
      {std::string(41, 'x'), std::string(40, 'x') + "..."},
  };
  for (const auto& row : rows) EXPECT_EQ(shown(row.raw), row.shown);
  for (const char* wrong : {"", "+1", " 1", "1 ", "0x1", "1e1", "1.0", "2147483648"})
    EXPECT_FALSE(whole_number(wrong)) << wrong;
  EXPECT_EQ(whole_number("-010"), -10);
}

TEST(Forms, NothingIsRenderedForWhoTakesNoMore) {
  const Piece tone = tone_piece(lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1), 100, 2000, 90);
  for (const auto write : {write_csv, write_codes, write_wav}) {
    int calls = 0;
    write(tone.waveform, [&](std::string_view) { return ++calls < 3; });
    EXPECT_EQ(calls, 3);
  }
}

TEST(Forms, CsvTellsTimeAsPrintfDoes) {
  for (const int32_t chip : {0, 1}) {
    const lrasynth_profile profile = lrasynth_profile_of(chip, LRASYNTH_MOTOR_1040, 1);
    const Piece tone = tone_piece(profile, 100, 600, 90);
    std::string lines;
    write_csv(tone.waveform, [&](std::string_view bytes) {
      lines += bytes;
      return true;
    });
    std::vector<uint8_t> codes(static_cast<size_t>(tone.waveform.length));
    tone.waveform.read(0, codes);
    std::string expected = "sample,time_ms,code,amplitude\n";
    for (size_t i = 0; i < codes.size(); ++i) {
      expected += text("%zu,%.4f,%d,%d\n", i, static_cast<double>(i) * 1000.0 / profile.sample_rate, codes[i],
                       static_cast<int8_t>(codes[i]));
    }
    EXPECT_EQ(lines, expected);
  }
}

}  // namespace
