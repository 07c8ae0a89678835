// SPDX-License-Identifier: Apache-2.0
// lrasynth pattern and compare: long signals from pattern files, one at a time or side by side.
#include <algorithm>
#include <filesystem>
#include <memory>

#include "design/forms.h"
#include "design/motor.h"
#include "design/sheet.h"
#include "design/summary.h"
#include "design/text.h"
#include "options.h"

namespace command {
namespace {

using design::text;

constexpr const char* kPatternExample = R"(Example:
  lrasynth pattern heartbeat.json --loop 3 --interval 200 heartbeat.wav heartbeat.svg)";

constexpr const char* kCompareHelp = R"(Without an .svg file the numbers are printed as a table.

Examples:
  lrasynth compare --level 30 --motor 832,1040,9595 taps.svg
  lrasynth compare old.json new.json --motor 832 --boost on,off patterns.svg)";

struct PatternCommand {
  std::string path;
  Device device;
  design::Playback playback;
  std::string save_path;
  bool print_request = false;
  Outputs outputs;
};

design::Piece pattern_piece(const std::string& path, const lrasynth_profile& profile,
                            const design::Playback& playback) {
  const std::string name = std::filesystem::path(path).filename();
  design::Piece piece = design::pattern_piece(profile, playback, read_events(path, profile, playback), name);
  // The empty event that closes some requests is all that has not been checked yet.
  if (piece.waveform.length < 0) throw Failure(kWrongInput, "--limit: the end of the pattern lies beyond it");
  const std::string cause = playback.loops > 1 ? "--loop, --interval" : shown_path(path);
  if (!piece.is_stream()) check_length(cause, piece.waveform.length_ms());
  return piece;
}

void run(const CLI::App& command, const PatternCommand& pattern) {
  const lrasynth_profile profile = pattern.device.profile(command);
  refuse_idle(command, {"--interval"}, pattern.playback.loops == 1, "without --loop 2 or more");
  refuse_idle(command, {"--interval", "--limit", "--response", "--response-hz"}, design::is_event_stream(profile),
              "with --chip 11");
  const design::Piece piece = pattern_piece(pattern.path, profile, pattern.playback);
  std::vector<File> files;
  if (command.count("--save") > 0) {
    const auto& events = piece.score->events();
    files.push_back(text_file(pattern.save_path, canonical_json(events),
                              design::counted(static_cast<int64_t>(events.size()), "event")));
  }
  if (pattern.print_request) files.push_back(text_file(kStandardOutput, design::c_array(piece.score->request())));
  pattern.outputs.finish(command, piece, std::move(files), {pattern.path});
}

struct Comparison {
  std::vector<std::string> paths;  // pattern files, and perhaps a picture at the end
  std::vector<std::string> motors = {"1040"};
  std::vector<int32_t> chips = {0};
  std::vector<std::string> boosts = {"on"};
  Tap tap;
  View view;
};

std::vector<lrasynth_profile> profiles_of(const Comparison& comparison) {
  std::vector<lrasynth_profile> profiles;
  for (const std::string& motor : comparison.motors) {
    for (const int32_t chip : comparison.chips) {
      if (chip == LRASYNTH_CHIP_EVENT_STREAM) throw Failure(kWrongInput, "--chip: 11 plays events, not a waveform");
      for (const std::string& boost : comparison.boosts) {
        profiles.push_back(profile_of(motor, chip, boost));
        if (!design::has_boost(profiles.back().motor_type)) break;
      }
    }
  }
  return profiles;
}

void run(const CLI::App& command, const Comparison& comparison) {
  constexpr size_t kMost = 12;
  std::vector<std::string> files = comparison.paths;
  std::string picture;
  if (!files.empty() && ending_of(files.back()) == ".svg") {
    picture = files.back();
    files.pop_back();
  }
  const auto profiles = profiles_of(comparison);
  const auto has_boost = [](const lrasynth_profile& profile) { return design::has_boost(profile.motor_type); };
  refuse_idle(command, {"--boost"}, std::none_of(profiles.begin(), profiles.end(), has_boost), "on these motors");
  refuse_idle(command, {"--boost"}, files.empty(), "for taps");
  if (std::count(files.begin(), files.end(), kStandardOutput) > 1) throw Failure(kWrongInput, "-: is named twice");
  const auto has_shares = [](const lrasynth_profile& profile) { return design::has_shares(profile.motor_type); };
  const bool no_shares = std::none_of(profiles.begin(), profiles.end(), has_shares);
  refuse_idle(command, {"--in-pattern"}, no_shares, "on these motors");
  refuse_idle(command, {"--level", "--intensity", "--in-pattern"}, !files.empty(), "beside a pattern");
  refuse_idle(command, {"--from", "--to"}, picture.empty(), "without an .svg file");
  std::vector<design::Piece> pieces;
  design::Span whole = {0, 0};
  for (const lrasynth_profile& profile : profiles) {
    if (files.empty()) pieces.push_back(tap_piece(profile, comparison.tap));
    for (const std::string& file : files) pieces.push_back(pattern_piece(file, profile, {}));
    if (pieces.size() > kMost) throw Failure(kWrongInput, text("at most %zu waveforms can be compared", kMost));
  }
  for (const design::Piece& piece : pieces) {
    comparison.view.report(piece, piece.waveform.title + ": ");
    whole.to = std::max(whole.to, felt_span(piece.waveform, comparison.view.resonator()).to);
  }
  const design::Resonator resonator = comparison.view.resonator();
  if (picture.empty()) return write_files({text_file(kStandardOutput, table_of(pieces, resonator))});
  const std::string drawn = comparison_of(pieces, resonator, comparison.view.shown(whole));
  write_files({text_file(picture, drawn, design::counted(static_cast<int64_t>(pieces.size()), "waveform"))}, files);
}

}  // namespace

void add_pattern(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("pattern", "Render a pattern of timed events");
  const auto pattern = std::make_shared<PatternCommand>();
  design::Playback& playback = pattern->playback;
  add_files(command, "FILE", pattern->path, "Pattern in JSON; - is standard input")->required();
  pattern->device.add(command, true, true);
  const auto time = number_in(0, design::kLongestMs);
  add(command, "--loop", playback.loops, "How often it plays", number_in(1, 65535));
  add(command, "--interval", playback.interval_ms, "Silence between two passes in ms", time);
  add(command, "--limit", playback.limit_ms, "Latest start of a continuous event in ms", time)->default_str("");
  command.add_option("--save", pattern->save_path, "Write the checked pattern in canonical form to this file, or -")
      ->type_name("FILE");
  command.add_flag("--print-request", pattern->print_request, "Print the pattern as an array for a C host");
  pattern->outputs.add(command);
  command.footer(design::kPatternHelp + std::string(kOutputHelp) + kPatternExample);
  command.callback([pattern, &command] { run(command, *pattern); });
}

void add_compare(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("compare", "Draw patterns or a tap on several motors, chips, boost settings");
  const auto comparison = std::make_shared<Comparison>();
  command.add_option("FILE", comparison->paths, "Pattern files, none for a tap; last the .svg file to write, if any")
      ->type_name("");
  add(command, "--motor", comparison->motors, "Motor models, separated by commas", one_of(motor_words()));
  add(command, "--chip", comparison->chips, "Chip types", chip_number());
  add(command, "--boost", comparison->boosts, "Boost settings of motor 832", one_of("on|off"));
  comparison->tap.add(command, true);
  comparison->view.add(command);
  command.footer(kCompareHelp);
  command.callback([comparison, &command] { run(command, *comparison); });
}

}  // namespace command
