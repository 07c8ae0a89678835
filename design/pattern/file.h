// SPDX-License-Identifier: Apache-2.0
// Patterns as JSON, the form in which people write them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/pattern/event.h"
#include "design/pattern/json.h"

namespace design {

constexpr size_t kLargestFile = size_t{4} << 20U;  // bytes
constexpr size_t kMostEvents = 50'000;             // with all repetitions of groups
constexpr int32_t kMostLoops = 65'535;

// How often a pattern plays, and the latest start of a continuous vibration.
struct Playback {
  int32_t loops = 1;
  int32_t interval_ms = 0;
  int32_t limit_ms = LRASYNTH_NO_LIMIT;
};

// What a pattern is made for or played with, as far as that is said.
struct Setup {
  std::optional<int32_t> motor = std::nullopt;
  std::optional<int32_t> chip = std::nullopt;
  std::optional<int32_t> boost = std::nullopt;  // 0 or 1
  std::optional<int32_t> loops = std::nullopt;
  std::optional<int32_t> interval_ms = std::nullopt;
  std::optional<int32_t> limit_ms = std::nullopt;

  lrasynth_profile profile() const;
  Playback playback() const;
};

// What is asked for, and what a file says of the rest.
Setup merged(const Setup& asked, const Setup& of_file);

// What is asked for against what the file says: "motor 832 overrides the file's 1040".
std::vector<std::string> overrides(const Setup& asked, const Setup& of_file);

// The text of a file and its tree, which refers to it. Of a text that is larger than a file may be there is no tree.
struct Source {
  std::string text;
  JsonText json;
};

std::shared_ptr<const Source> source_of(std::string_view text);

// What can be read of a file, and what cannot.
struct PatternFile {
  std::string name;
  std::string note;
  Setup setup;
  // Laid out, in ascending start; as they stand where the file says that it is flat. Not yet fitted to a chip and
  // motor.
  std::vector<Event> events;
  std::vector<std::string> notes;   // on what was not taken as it stands
  std::vector<std::string> losses;  // of a file from elsewhere: what could not be taken
  Faults faults;
  std::shared_ptr<const Source> source;
};

PatternFile read_pattern(std::shared_ptr<const Source> source);
inline PatternFile read_pattern(std::string_view json) { return read_pattern(source_of(json)); }

// Whether it has comments, which are not kept.
bool has_comments(const Source& source);

// All that it says, a line for each event, its fields and its events in one order. The text is without faults.
std::string canonical_json(const Source& source);

// The same for whoever knows nothing of motors' shares: taps have the strength that this profile's motor gets, and
// points of curves are whole milliseconds from their event's start.
std::string handed_on_json(const Source& source, const lrasynth_profile& profile);

// The same waveform as a file of records, one for each that events are made of, for this chip and motor. Its events are
// fitted to them.
std::string flat_json(const std::vector<Event>& events, const lrasynth_profile& profile, const Playback& playback);

// The form of a file, for people.
constexpr const char* kPatternHelp = R"(FILE:
  {"tempo": 120, "events": [
    {"type": "transient", "start": 0, "intensity": 80, "level": 50},
    {"type": "curve", "start": "1/4b", "points": [[0, 20, -20], [150, 100, 0], [300, 0, 20]]},
    {"type": "group", "start": "1b", "repeat": 4, "every": "1/2b", "gain": 60, "events": [
      {"type": "transient", "start": 0, "driven": 40, "level": 90}
    ]}
  ]}
  A transient is a tap: of an intensity (percent, 0..100) and a level (its character: from 0, dull, over 50, the motor's
  resonance, to 100, crisp). driven in place of the intensity is the strength that the motor gets, of which motor 1040
  takes a share inside patterns. A curve is a vibration through two points or more of time, intensity (percent, 0..100)
  and frequency offset (-50..50, steps of a motor's own curve around its resonance at 0; sheet draws it); a point may
  be {"time": 0, "intensity": 20, "hz": 134}, too. It plays as drawn, by as many records as that takes. A continuous
  event ("duration", and four points) is one record, which plays its points otherwise: its carrier moves twice as far.
  A group plays its events, whose times count from its own, repeat times, every so often, at gain percent; groups stand
  in groups, 8 deep at most.

  With "felt": true at a tap, a curve, a group or the file, intensities are percent of what is felt, estimated for each
  motor: 0 is rest, 100 is 20 dB above the threshold of touch.

  Times are milliseconds, or (not in records) "250ms", "1.5s", and with a tempo (beats a minute) "2b", "1/3b": starts
  and point times 0..600000 ms, durations from 1 ms on. They are rounded from the pattern's start, so that beats do not
  drift; 4096 and 4097 stand for events and are taken for nothing else. Of point times only the differences count; those
  of a continuous event span its duration. All passes and gaps together last 600000 ms at most, a file has 4 MiB and
  50000 events at most. Comments (// and /* */) are passed over.

  Besides, a file may have "version": 1, "name", "note" (as may every event), and what it was made for: "motor",
  "chip", "boost" (true or false), "loops", "interval", "limit". Options override these.

  Events may stand in any order. Taps play over vibrations; of two vibrations or taps, the one that starts later plays.
  With --chip 11 the output is the event stream, of 64 MiB at most: .bin, or .csv to read it. A record
  ("type": "record") is one as the library takes it, of which points may lie beyond the duration. Files that --flat
  writes are made of them; their events stay in their order ("flat": true), and have neither names nor notes.

)";

}  // namespace design
