// SPDX-License-Identifier: Apache-2.0
// Pattern files as people think: curves as drawn, driven taps, groups, beats, and how they are saved.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "design/advice/piece.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/pattern/compile.h"
#include "design/waveform/stretch.h"

using namespace design;
using testing::ElementsAreArray;

namespace {

const std::string kTap = R"({"type":"transient","start":0,"intensity":50,"level":50})";

std::string group(const std::string& fields, const std::string& events) {
  return R"({"type":"group","start":5,)" + fields + R"("events":[)" + events + "]}";
}

std::string in_events(const std::string& events) { return "{\"events\":[" + events + "]}"; }

std::vector<uint8_t> codes_of(const Waveform& waveform) {
  std::vector<uint8_t> codes(static_cast<size_t>(waveform.length));
  waveform.read(0, codes);
  return codes;
}

class Dice {
 public:
  int32_t up_to(int32_t most) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(most + 1)); }
  int32_t from(int32_t least, int32_t most) { return least + up_to(most - least); }

  std::vector<CurvePoint> points(int32_t least_ms, int32_t most_ms) {
    std::vector<CurvePoint> points;
    int32_t ms = 0;
    for (int32_t left = from(2, 12); left > 0; --left) {
      points.push_back({ms, up_to(100), from(-50, 50)});
      ms += from(least_ms, most_ms);
    }
    return points;
  }

 private:
  std::mt19937 random_{7};
};

// What is drawn, at any time.
struct Line {
  std::vector<Asked> points;
  std::vector<double> amplitudes;

  Line(const lrasynth_profile& profile, const Event& event) : points(line_of(profile, event)) {
    const Tuning tuning(profile);
    for (const CurvePoint& point : event.curve()->points) {
      amplitudes.push_back(tuning.full(point.offset) * point.intensity / 100);
    }
  }

  double hz_at(double ms) const {
    return at(ms, [this](size_t i) { return points[i].hz; });
  }
  double amplitude_at(double ms) const {
    return at(ms, [this](size_t i) { return amplitudes[i]; });
  }
  double distance(double from, double to) const {
    double least = 1e9;
    for (const Asked& point : points) least = std::min(least, std::max({0.0, from - point.ms, point.ms - to}));
    return least;
  }

 private:
  template <class Value>
  double at(double ms, Value value) const {
    size_t to = 1;
    while (to + 1 < points.size() && points[to].ms < ms) ++to;
    const double share = (ms - points[to - 1].ms) / (points[to].ms - points[to - 1].ms);
    return value(to - 1) + share * (value(to) - value(to - 1));
  }
};

struct Count {
  int swings = 0;
  int near = 0;
  int seams = 0;
  int smooth = 0;
  double worst_jump = 0;
};

// Half swings away from drawn points, by their lengths and peaks.
void count_swings(const Line& line, const Waveform& waveform, Count& count) {
  const std::vector<uint8_t> codes = codes_of(waveform);
  const double rate = waveform.profile.sample_rate;
  double before = -1;  // the crossing, in ms
  double sign = 0;
  int peak = 0;
  double peak_ms = 0;
  for (size_t i = 0; i < codes.size(); ++i) {
    const int value = amplitude(codes[i]);
    if (std::abs(value) <= 1) continue;
    const double ms = static_cast<double>(i) * 1000 / rate;
    if (value * sign < 0) {
      const int last = amplitude(codes[i - 1]);
      const double crossing = ms - 1000 / rate * std::abs(value) / (std::abs(value) + std::abs(last));
      const double hz = line.hz_at((before + crossing) / 2);
      const double wanted = line.amplitude_at(peak_ms);
      const double samples = rate / 2 / hz;
      const double blur = 1.5 * (rate / 2) / (samples * samples) * (1 + 30 / std::max(8.0, wanted));
      const bool is_near =
          std::fabs(500 / (crossing - before) - hz) <= std::max(4.0, 0.03 * hz) + blur && std::fabs(peak - wanted) <= 5;
      if (before >= 0 && line.distance(before, crossing) >= 10 && wanted >= 3) {
        ++count.swings;
        count.near += is_near ? 1 : 0;
      }
      before = crossing;
      peak = 0;
    }
    sign = value;
    if (std::abs(value) > peak) {
      peak = std::abs(value);
      peak_ms = ms;
    }
  }
}

void count_seams(const Line& line, const Event& event, const Waveform& waveform, Count& count) {
  const std::vector<uint8_t> codes = codes_of(waveform);
  for (const CurvePart& part : event.parts()) {
    for (const int32_t since_ms : {0, part.vibration.point_ms(1)}) {
      const auto at = static_cast<size_t>((part.since_ms + since_ms) * (waveform.profile.sample_rate / 1000));
      const double there = line.amplitude_at(part.since_ms + since_ms);
      if (at == 0 || since_ms >= part.vibration.duration_ms || there < 7) continue;
      const double jump = std::abs(amplitude(codes[at]) - amplitude(codes[at - 1])) / there;
      ++count.seams;
      count.smooth += jump <= 0.3 ? 1 : 0;
      count.worst_jump = std::max(count.worst_jump, jump);
    }
  }
}

TEST(Curve, PlaysAsDrawn) {
  Dice dice;
  Count count;
  size_t records = 0;
  size_t stretches = 0;
  for (int i = 0; i < 80; ++i) {
    const lrasynth_profile profile = lrasynth_profile_of(i % 2, motors()[static_cast<size_t>(i) / 2 % 4], i / 8 % 2);
    std::vector<Event> events = {{.kind = Curve{dice.points(20, 400)}}};
    fit(events, profile);
    const Line line(profile, events[0]);
    const Waveform waveform = event_waveform(profile, events[0]);
    ASSERT_EQ(waveform.length_ms(), events[0].curve()->duration_ms());
    count_swings(line, waveform, count);
    count_seams(line, events[0], waveform, count);
    records += events[0].records().size();
    stretches += line.points.size() - 1;
  }
  EXPECT_GT(count.swings, 20'000);
  EXPECT_GE(count.near, 0.99 * count.swings);
  EXPECT_GE(count.smooth, 0.9 * count.seams);
  EXPECT_LE(count.worst_jump, 0.6);
  EXPECT_LE(records, stretches);
}

// The rest behind a short fade does not begin within it.
TEST(Curve, FadesToItsEnd) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  std::vector<Event> events = {{.kind = Curve{{{0, 100, 0}, {30, 0, 0}, {60, 0, 0}}}}};
  fit(events, profile);
  const std::vector<uint8_t> codes = codes_of(event_waveform(profile, events[0]));
  const auto sounds = [](uint8_t code) { return std::abs(amplitude(code)) > 1; };
  const auto last = std::find_if(codes.rbegin(), codes.rend(), sounds).base() - codes.begin();
  EXPECT_GT(last, 27 * 24);
}

// Wherever it starts and however long it is, dense, with steps, and of one length that reads as an event.
TEST(Curve, IsMadeOfRecordsThatTheLibraryTakes) {
  Dice dice;
  for (int i = 0; i < 600; ++i) {
    const lrasynth_profile profile = lrasynth_profile_of(i % 2, motors()[static_cast<size_t>(i) / 2 % 4], 1);
    Curve curve = {dice.points(1, i % 3 == 0 ? 12 : 900)};
    if (i % 5 == 0) curve.points.push_back({curve.points.back().ms, 40, 10});
    if (i % 7 == 0) curve.points.push_back({curve.points[0].ms + (i % 14 == 0 ? 60'000 : 4097), 90, -40});
    std::stable_sort(curve.points.begin(), curve.points.end(), [](auto& a, auto& b) { return a.ms < b.ms; });
    std::vector<Event> events = {{.start_ms = dice.from(3000, 4095), .kind = curve}};
    fit(events, profile);
    if (i == 0) {  // whose seams could only stand where they read as events
      events = {{.start_ms = 4095, .kind = curve = {{{0, 56, -3}, {1, 94, 9}, {2, 96, 12}}}}};
      fit(events, lrasynth_profile_of(0, LRASYNTH_MOTOR_81540, 1));
    }
    std::vector<int32_t> integers;
    int32_t end_ms = events[0].start_ms;
    for (const Record& record : events[0].records()) {
      EXPECT_EQ(record[1], end_ms);
      end_ms += record[4];
      integers.insert(integers.end(), record.begin(), record.end());
    }
    EXPECT_EQ(end_ms, events[0].start_ms + curve.duration_ms());
    const lrasynth_pattern pattern = {integers.data(), static_cast<int32_t>(integers.size()), 1, 0, LRASYNTH_NO_LIMIT};
    EXPECT_EQ(lrasynth_pattern_check(&profile, &pattern, nullptr), 0);
  }
}

TEST(Tap, IsDrivenAsAsked) {
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  for (int32_t level = 0; level <= 100; ++level) {
    for (const int32_t driven : {0, 1, 40, 99, 100}) {
      std::vector<Event> events = {{.kind = Tap{.level = level, .driven = driven}}};
      fit(events, profile);
      EXPECT_EQ(codes_of(event_waveform(profile, events[0])), codes_of(tap_waveform(profile, level, driven)));
    }
  }
}

// What a file is made of: its flat form without its head.
std::string flat_of(const std::string& json, int32_t chip = 0) {
  const PatternReading reading = read_piece({.chip = chip}, json, "f");
  if (!reading.piece) return reading.file.faults.lines("f")[0];
  const Score& score = *reading.piece->score;
  const std::string flat = flat_json(score.events(), score.profile(), score.playback());
  return flat.substr(flat.find("[\n"));
}

TEST(File, IsLaidOutInTime) {
  const std::string one = R"({"type":"transient","start":"1/3b","intensity":50,"level":50})";
  const std::string note = R"("note":"so",)";
  const struct {
    std::string json, starts;
  } rows[] = {
      {R"({"tempo":100,"events":[)" + group(R"("repeat":4,"every":"1/7b",)", one) + "]}", "205 291 376 462"},
      {R"({"tempo":110,"events":[)" + group(R"("repeat":6,"every":"1/7b",)", one) + "]}", "187 265 343 421 499 576"},
      {in_events(group(note + R"("repeat":2,"every":"1.5s",)", group(R"("repeat":2,"every":20,)", kTap) + "," + kTap)),
       "5 10 30 1505 1510 1530"},
      {in_events(group(R"("repeat":3,"every":"1022.75ms",)", group(R"("repeat":2,"every":1022.75,)", kTap))), ""},
      {in_events(group(R"("repeat":9,"every":682,)", kTap)), "5 687 1369 2051 2733 3415 4098 4779 5461"},
  };
  for (const auto& row : rows) {
    std::string starts;
    for (const Event& event : read_pattern(row.json).events) {
      starts += (starts.empty() ? "" : " ") + std::to_string(event.start_ms);
    }
    EXPECT_EQ(starts, row.starts) << row.json;
  }
  const std::vector<std::string> note_of_moved = {
      "1 event that would start at 4096 or 4097 ms, which read as the start of an event, starts at 4098 ms"};
  EXPECT_EQ(read_pattern(rows[4].json).notes, note_of_moved);
  EXPECT_EQ(read_pattern(rows[2].json).events[5].name.words(), "event 1.1.1, pass 2.2");
}

TEST(File, IsMadeOfWhatItSays) {
  const std::string curve = R"({"type":"curve","start":7,"points":[[3,40,0],{"time":63,"intensity":80,"hz":170}]})";
  const struct {
    std::string json;
    int32_t chip;
    std::string flat;
  } rows[] = {
      {in_events(group(R"("gain":50,)", group(R"("gain":150,)", kTap))), 0,
       R"({"type":"transient","start":10,"intensity":38,"level":50})"},
      {in_events(group(R"("gain":50,)", R"({"type":"transient","start":1,"driven":80,"level":9})")), 0,
       R"({"type":"transient","start":6,"driven":40,"level":9})"},
      {R"({"tempo":110,"flat":true,"events":[{"type":"transient","start":9,"intensity":1,"level":2},)"
       R"({"type":"continuous","start":"1/7b","duration":"1/3b","points":[[0,1,2],[0,1,2],["1/9b",1,2],["1/3b",1,2]]}]})",
       0,
       R"({"type":"transient","start":9,"intensity":1,"level":2},
  {"type":"continuous","start":78,"duration":182,"points":[[0,1,2],[0,1,2],[61,1,2],[182,1,2]]})"},
      {in_events(curve), 11,
       R"({"type":"record","start":7,"duration":60,"points":[[0,80,0],[0,80,0],[60,80,0],[60,80,0]]})"},
  };
  for (const auto& row : rows) EXPECT_EQ(flat_of(row.json, row.chip), "[\n  " + row.flat + "\n]}\n") << row.json;
}

TEST(File, FaultsOfGroupsAndCurves) {
  const std::string beats = R"({"type":"curve","start":"2b","points":[{"time":9,"hz":5},[8,0,0],)"
                            R"({"time":9,"hz":0,"intensity":1,"x":2}]})";
  std::string deep = kTap;
  for (int i = 0; i < 9; ++i) deep = group("", deep);
  const struct {
    std::string json;
    std::vector<std::string> lines;
  } rows[] = {
      {R"({"version":2,"motor":1041,"boost":1,"loops":0,"tempo":"fast","name":7,"interval":"1x","events":[)" + kTap +
           "]}",
       {"f:1:55: tempo: must be a number from 1 to 1000, not \"fast\"", "f:1:12: version: must be 1, not 2",
        "f:1:69: name: must be a text, not 7", "f:1:22: motor: must be 832, 1040, 9595 or 81540, not 1041",
        "f:1:35: boost: must be true or false, not 1", "f:1:45: loops: must be a whole number from 1 to 65535, not 0",
        "f:1:82: interval: must be milliseconds or a text like \"250ms\", \"1.5s\", \"2b\", \"1/3b\", not \"1x\""}},
      {in_events(group(R"("repeat":2,"every":100,)", beats)),
       {"f:1:95: event 1.1: start: counts beats, which need a tempo of the file: \"2b\"",
        "f:1:110: event 1.1: point 1, intensity: is missing", "f:1:167: event 1.1: point 3, x: is no field of a point",
        "f:1:151: event 1.1: point 3, hz: must be a whole number from 1 to 1000, not 0"}},
      {in_events(R"({"type":"curve","start":0,"points":[[5,0,0],{"intensity":1,"time":4,"offset":2}]})"),
       {"f:1:78: event 1: point 2, time: must be at least 5, the time of point 1, not 4"}},
      {in_events(R"({"type":"curve","start":"700s","points":[[5,0,0],["5ms",0,0]]})"),
       {"f:1:36: event 1: start: must be 0 to 600000 ms, not \"700s\""}},
      {in_events(R"({"type":"curve","start":4096,"points":[[5,0,0],["5.4ms",0,0]]})"),
       {"f:1:36: event 1: start: 4096 would read as the start of an event, take 4095",
        "f:1:50: event 1: points: span less than a millisecond"}},
      {in_events(R"({"type":"transient","start":0,"driven":3,"intensity":4,"level":5})"),
       {"f:1:51: event 1: driven: stands in place of the intensity, not beside it"}},
      {in_events(group(R"("repeat":9,"every":1,"gain":300,)", kTap)),
       {"f:1:80: event 1.1, pass 1: with the gain of its groups its intensity is 150, more than 100"}},
      {in_events(group(R"("repeat":2,)", kTap) + "," + group("", "")),
       {"f:1:12: event 1: every: is missing, how far its repetitions are apart",
        "f:1:153: event 2: events: must be a list of at least one"}},
      {in_events(deep), {"f:1:300: event 1.1.1.1.1.1.1.1.1: stands too deep: groups may be 8 deep"}},
      {in_events(group(R"("repeat":50000,"every":1,)", kTap + "," + kTap)),
       {"f:1:73: event 1.1, pass 25001: is one too many: a file has 50000 events at most"}},
      {in_events(group(R"("repeat":50000,"every":1,"gain":300,)", group(R"("repeat":50000,"every":1,)", kTap))),
       {"f:1:145: event 1.1.1, pass 1.1: with the gain of its groups its intensity is 150, more than 100"}},
      {in_events(group(R"("repeat":50000,"every":20,)", kTap)),
       {"f:1:102: event 1.1, pass 30001: start: must be at most 600000 ms, not 600005"}},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(read_pattern(row.json).faults.lines("f"), ElementsAreArray(row.lines)) << row.json;
  }
  const std::string far = R"({"type":"record","start":0,"duration":10,"points":[[0,0,0],[0,0,0],[0,9,0],[20,900,5]]})";
  EXPECT_EQ(flat_of(in_events(far)), "f:1:12: event 1: point 4, intensity: an amplitude is beyond full scale");
  EXPECT_EQ(flat_of(in_events(R"({"type":"transient","start":0,"driven":60,"level":5})"), 11),
            "f:1:12: event 1: driven: a strength does not fit the 8 bits of an event stream: 600, more than 255");
}

TEST(File, IsSavedInOneForm) {
  const std::string late = R"({"type":"transient","start":9,"intensity":50,"level":50})";
  const std::string json = R"({ "events": [ // two
    {"level": 9, "start": "1b", "note": "a \"b\" \u00e4\n", "type": "transient", "driven": 3},
    {"events": [{"points": [[0, 1, -0], {"hz": 134, "intensity": 2, "time": "1/2b"}], "start": 0, "type": "curve"}],
     "every": 9, "type": "group", "repeat": 2, "start": 3}], "boost": false, "tempo": 92.50, "name": "x"})";
  const std::string saved = R"({"name":"x","boost":false,"tempo":92.5,"events": [
  {"type":"group","start":3,"repeat":2,"every":9,"events":[
    {"type":"curve","start":0,"points":[[0,1,0],{"time":"1/2b","intensity":2,"hz":134}]}
  ]},
  {"type":"transient","start":"1b","driven":3,"level":9,"note":"a \"b\" ä\u000a"}
]}
)";
  const PatternFile file = read_pattern(json);
  EXPECT_EQ(canonical_json(*file.source), saved);
  EXPECT_EQ(canonical_json(*read_pattern(saved).source), saved);
  EXPECT_TRUE(has_comments(*file.source));
  EXPECT_FALSE(has_comments(*read_pattern(saved).source));
  EXPECT_EQ(file.setup.boost, 0);
  const std::string in_order = "{\"flat\":true,\"events\": [\n  " + late + ",\n  " + kTap + "\n]}\n";
  EXPECT_EQ(canonical_json(*read_pattern(in_order).source), in_order);
}

// Events that lie over one another, of all kinds.
TEST(File, FlatOnesPlayTheSame) {
  Dice dice;
  for (int i = 0; i < 60; ++i) {
    std::string events;
    for (int count = 0; count < 6; ++count) {
      Event event = {.start_ms = dice.up_to(300), .kind = Curve{dice.points(1, 60)}};
      if (count % 3 == 1) event.kind = Tap{.level = dice.up_to(100), .driven = dice.up_to(100)};
      if (count % 3 == 2) {
        const int32_t end = dice.from(1, 200);
        event.kind = Vibration{end, {{{0, 50, 0}, {0, 90, -30}, {end, 90, dice.up_to(50)}, {end, 0, 0}}}};
      }
      const std::string fields = event.fields_json();
      events += (events.empty() ? "{" : ",{") + text("\"type\":\"%s\",", event.type()) + fields + "}";
    }
    const std::string json = in_events(group(R"("repeat":2,"every":250,"gain":80,)", events));
    const design::Setup asked = {
        .motor = motors()[static_cast<size_t>(i) % 3], .chip = i % 2, .loops = 2, .interval_ms = i};
    const PatternReading reading = read_piece(asked, json, "f");
    ASSERT_TRUE(reading.piece) << json;
    const Score& score = *reading.piece->score;
    const PatternReading flat = read_piece({}, flat_json(score.events(), score.profile(), score.playback()), "f");
    ASSERT_TRUE(flat.piece) << json;
    EXPECT_EQ(codes_of(flat.piece->waveform), codes_of(reading.piece->waveform)) << json;
  }
}

// Groups that start earlier than what is beside them; halves of percents.
TEST(File, SavedOnesPlayTheSame) {
  const std::string late = R"({"type":"transient","start":105,"intensity":80,"level":50})";
  const std::string soft = R"({"type":"transient","start":100,"intensity":25,"level":90})";
  const std::string json = in_events(late + "," + group(R"("gain":58,)", soft));
  EXPECT_EQ(flat_of(canonical_json(*read_pattern(json).source)), flat_of(json));
  EXPECT_THAT(flat_of(json), testing::HasSubstr(R"("intensity":15,"level":90)"));
}

TEST(Curve, TellsWhereItCannotBeFollowed) {
  const std::string steep = R"({"type":"curve","start":9,"points":[[0,97,50],[30,0,50],[55,0,50]]})";
  const PatternReading reading = read_piece({.motor = 81540, .chip = 1}, in_events(steep), "f");
  ASSERT_EQ(reading.piece->warnings.size(), 1U);
  EXPECT_THAT(reading.piece->warnings[0].what, testing::HasSubstr("too steep to be followed"));
}

TEST(File, SaysWhatItWasMadeFor) {
  const std::string json =
      R"({"motor":832,"chip":1,"boost":false,"loops":2,"interval":"1s","limit":500,"events":[)" + kTap + "]}";
  const PatternReading as_written = read_piece({}, json, "f");
  EXPECT_EQ(as_written.piece->waveform.title, "Pattern: f, motor 832, boost off, chip 1, 2 times, 1000 ms apart");
  EXPECT_TRUE(as_written.file.notes.empty());
  const PatternReading other = read_piece({1040, 0, 1, 2, 7, 9}, json, "f");
  EXPECT_EQ(other.piece->waveform.title, "Pattern: f, motor 1040, 2 times, 7 ms apart");
  EXPECT_THAT(
      other.file.notes,
      ElementsAreArray({"motor 1040 overrides the file's 832", "chip 0 overrides the file's 1",
                        "interval 7 ms overrides the file's 1000 ms", "limit 9 ms overrides the file's 500 ms"}));
}

TEST(Curve, TellsWhatTheMotorDoesNotReach) {
  const std::string json = in_events(
      R"({"type":"curve","start":5,"points":[{"time":0,"intensity":90,"hz":186},{"time":90,"intensity":0,"hz":304}]})");
  const auto lines = [&](int32_t motor, int32_t chip) {
    const PatternReading reading = read_piece({.motor = motor, .chip = chip}, json, "f");
    std::vector<std::string> told = reading.file.notes;
    for (const Warning& warning : reading.piece->warnings) told.push_back(line_of(warning));
    return told;
  };
  const auto plays = [](int hz) {
    return std::vector{text("event 1 at 5 ms: point 1 asks for 186 Hz and plays %d Hz, the nearest of this motor", hz)};
  };
  EXPECT_EQ(lines(832, 0), plays(200));
  EXPECT_EQ(lines(1040, 0), plays(202));
  EXPECT_TRUE(lines(81540, 0).empty());
  EXPECT_THAT(lines(1040, 11), ElementsAreArray({"1 curve is sent as one event of its largest intensity"}));
}

}  // namespace
