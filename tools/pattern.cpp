// SPDX-License-Identifier: Apache-2.0
// lrasynth pattern: a long signal from a pattern file.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>

#include "options.h"
#include "pattern_file.h"
#include "text.h"

namespace command {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPatternHelp = R"(FILE:
  {"events": [
    {"type": "transient", "start": 0, "intensity": 80, "level": 50},
    {"type": "continuous", "start": 40, "duration": 400,
     "points": [[0, 20, -20], [100, 100, 0], [300, 80, 10], [400, 0, 0]]}
  ]}
  Times are whole milliseconds. A transient has an intensity (0..100) and a level (0..100). A continuous event has four
  points of time, intensity (0..100) and frequency offset (-50..50), whose times span its duration.

  Events may stand in any order. Transients play over continuous events; of two events of one kind, the one that starts
  later plays. With --chip 11 the output is the event stream: .bin, or .csv to read it.

)";

constexpr const char* kExample = R"(Example:
  lrasynth pattern heartbeat.json --loop 3 --interval 200 heartbeat.wav heartbeat.svg)";

struct PatternCommand {
  std::string path;
  Profile profile;
  int32_t loops = 1;
  int32_t interval_ms = 0;
  int32_t limit_ms = LRASYNTH_NO_LIMIT_MS;
  std::string save_path;
  bool print_request = false;
  Outputs outputs;

  bool makes_event_stream() const { return profile.chip == LRASYNTH_CHIP_EVENT_STREAM; }
};

std::string content_of(const std::string& path) {
  if (fs::is_directory(path)) throw Failure(kCannotRender, "cannot read " + path + ": is a directory");
  std::ifstream file;
  if (path != "-") file.open(path, std::ios::binary);
  std::istream& stream = path == "-" ? std::cin : file;
  std::string content(std::istreambuf_iterator<char>(stream), {});
  if (!stream) throw Failure(kCannotRender, "cannot read " + path);
  return content;
}

// What would be right with other options.
std::vector<std::string> faults_with(const PatternCommand& command, const std::vector<Event>& events) {
  std::vector<std::string> faults;
  if (command.makes_event_stream()) return faults;
  for (const Event& event : events) {
    if (event.continuous && event.start_ms > command.limit_ms) {
      faults.push_back(text("event %d: start: must be at most %d, the --limit", event.number, command.limit_ms));
    }
    if (!event.continuous && getShortSignalDataLength(event.level) == 0) {
      faults.push_back(text("event %d: type: motor %d has no transients", event.number, command.profile.motor));
    }
  }
  return faults;
}

std::vector<Event> checked_events(const PatternCommand& command) {
  PatternFile file = read_pattern(content_of(command.path));
  for (std::string& fault : faults_with(command, file.events)) file.faults.push_back(std::move(fault));
  std::string lines;
  for (const std::string& fault : file.faults) {
    lines += (lines.empty() ? "" : "\n") + command.path + ": " + fault;
  }
  if (!lines.empty()) throw Failure(kWrongInput, lines);
  return file.events;
}

std::string as_c_array(const std::vector<int32_t>& request) {
  std::string lines = text("static const int32_t pattern[%zu] = {", request.size());
  for (size_t i = 0; i < request.size(); ++i) {
    lines += text("%s%d,", i % LRASYNTH_RECORD_LENGTH == 0 ? "\n    " : " ", request[i]);
  }
  return lines + "\n};\n";
}

std::string stream_csv(const std::vector<uint8_t>& stream) {
  const auto at16 = [&](size_t i) { return stream[i] + 256 * stream[i + 1]; };
  std::string lines = "event,delta_ms,strength,duration_ms\n";
  for (size_t i = 2; i < stream.size(); i += 6) {
    lines += text("%zu,%d,%d,%d\n", i / 6 + 1, at16(i + 1), stream[i + 3], at16(i + 4));
  }
  return lines + text("total,,,%d\n", at16(0));
}

// The stream tells times in 16 bits.
void check_total(const PatternCommand& command, const std::vector<Event>& events) {
  constexpr int64_t kMost = 65535;
  constexpr int32_t kTransientMs = 5;
  int64_t total_ms = events.back().start_ms;
  for (const Event& event : events) total_ms += event.continuous ? event.duration_ms : kTransientMs;
  if (total_ms * command.loops <= kMost) return;
  throw Failure(kWrongInput, text("--chip: an event stream may last 65535 ms, not %d times %d ms", command.loops,
                                  static_cast<int32_t>(total_ms)));
}

std::vector<File> stream_files(const PatternCommand& command, const std::vector<uint8_t>& stream) {
  const std::string note = text("%zu bytes of event stream", stream.size());
  std::vector<File> files;
  for (const std::string& path : command.outputs.paths) {
    const std::string form = command.outputs.form(path);
    if (form != ".bin" && form != ".csv") {
      throw Failure(kWrongInput, text("OUTPUT: %s must end in .bin or .csv with --chip 11", path.c_str()));
    }
    files.push_back({path, form == ".csv" ? stream_csv(stream) : std::string(stream.begin(), stream.end()), note});
  }
  return files;
}

EventShape shape_of(const Event& event, double pass_start_ms) {
  const double start_ms = pass_start_ms + event.start_ms;
  const double end_ms = pass_start_ms + event.end_ms();
  const double height = event.intensity;
  if (!event.continuous) return {false, {{start_ms, 0}, {start_ms, height}, {end_ms, height}, {end_ms, 0}}};
  EventShape shape = {true, {{start_ms, 0}}};
  for (const CurvePoint& point : event.points) {
    const double since_start_ms = point.time_ms - event.points[0].time_ms;
    shape.intensity_at_ms.push_back({start_ms + since_start_ms, static_cast<double>(point.intensity)});
  }
  shape.intensity_at_ms.push_back({end_ms, 0});
  return shape;
}

// Where passes and gaps lie, and every event in every pass, unless that would only blacken the plot.
void describe(Waveform& waveform, const PatternCommand& command, const std::vector<Event>& events, double pass_ms) {
  constexpr int32_t kMostPasses = 20;
  if (command.loops > kMostPasses) return;
  for (int32_t pass = 0; pass < command.loops; ++pass) {
    const double start_ms = pass * (pass_ms + command.interval_ms);
    for (const Event& event : events) waveform.events.push_back(shape_of(event, start_ms));
    if (command.loops == 1) continue;
    if (pass > 0) waveform.sections.push_back({start_ms - command.interval_ms, start_ms, "gap", false});
    waveform.sections.push_back({start_ms, start_ms + pass_ms, text("pass %d", pass + 1), true});
  }
}

std::vector<uint8_t> render(const PatternCommand& command, const std::vector<int32_t>& request) {
  const auto count = static_cast<int32_t>(request.size());
  const int32_t length = getLongSignalBufferLength(command.loops, command.interval_ms, request.data(), count);
  check_length("--loop, --interval", length);
  std::vector<uint8_t> codes(static_cast<size_t>(length));
  const int32_t status =
      getLongSignalData(command.loops, command.interval_ms, request.data(), codes.data(), count, command.limit_ms);
  // The empty event that closes some requests is all that has not been checked yet.
  if (status != 0) throw Failure(kWrongInput, "--limit: the end of the pattern lies beyond it");
  return codes;
}

std::vector<File> rendered_files(const PatternCommand& command, const std::vector<Event>& events,
                                 const std::vector<int32_t>& request) {
  if (command.makes_event_stream()) {
    check_total(command, events);
    return stream_files(command, render(command, request));
  }
  const auto count = static_cast<int32_t>(request.size());
  const int32_t pass = getLongSignalDataLength(command.loops, command.interval_ms, request.data(), count);
  const std::string name = fs::path(command.path).filename();
  Waveform waveform = {.title = text("Pattern: %s, motor %d", name.c_str(), command.profile.motor),
                       .codes = render(command, request)};
  describe(waveform, command, events, waveform.ms_of(static_cast<size_t>(pass)));
  return command.outputs.files(waveform);
}

void run(const PatternCommand& command) {
  command.profile.apply();
  const std::vector<Event> events = checked_events(command);
  const std::vector<int32_t> request = request_of(events);
  std::vector<File> files;
  if (!command.outputs.paths.empty()) files = rendered_files(command, events, request);
  if (!command.save_path.empty()) {
    files.push_back({command.save_path, canonical_json(events), text("%zu events", events.size())});
  }
  if (command.print_request) files.push_back({kStandardOutput, as_c_array(request), ""});
  if (files.empty()) throw Failure(kWrongInput, "OUTPUT, --save or --print-request is required");
  write_files(files);
}

}  // namespace

void add_pattern(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("pattern", "Render a pattern of timed events");
  const auto pattern = std::make_shared<PatternCommand>();
  command.add_option("FILE", pattern->path, "Pattern in JSON; - is standard input")->required()->type_name("");
  pattern->profile.add_motor(command);
  pattern->profile.add_chip(command);
  pattern->profile.add_boost(command);
  add_integer(command, "--loop", pattern->loops, "How often it plays", 1, 65535)->capture_default_str();
  add_integer(command, "--interval", pattern->interval_ms, "Silence between two passes in ms", 0, kLongestMs)
      ->capture_default_str();
  add_integer(command, "--limit", pattern->limit_ms, "Latest start of a continuous event in ms", 0,
              LRASYNTH_NO_LIMIT_MS)
      ->capture_default_str();
  command.add_option("--save", pattern->save_path, "Write the checked pattern in canonical form to this file, or -")
      ->type_name("FILE");
  command.add_flag("--print-request", pattern->print_request, "Print the pattern as an array for a C host");
  pattern->outputs.add(command);
  command.footer(kPatternHelp + std::string(kOutputHelp) + kExample);
  command.callback([pattern] { run(*pattern); });
}

}  // namespace command
