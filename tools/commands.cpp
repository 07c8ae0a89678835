// SPDX-License-Identifier: Apache-2.0
// What each command does.
#include "arguments.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>
#include <span>

#include "design/forms.h"
#include "design/plot.h"
#include "design/sheet.h"
#include "design/summary.h"
#include "design/text.h"

namespace command {
namespace {

using design::text;

// Prints the warnings of all, and ends the command where they are faults.
void report(const Arguments& arguments, std::span<const design::Piece> pieces) {
  size_t count = 0;
  for (size_t i = 0; i < pieces.size(); ++i) {
    count += pieces[i].warnings.size();
    const std::string name = pieces.size() == 1 ? "" : text("%zu: ", i + 1) + pieces[i].waveform.title + ": ";
    for (const design::Warning& warning : pieces[i].warnings) {
      std::cerr << "lrasynth: warning: " << name << line_of(warning) << '\n';
    }
  }
  if (arguments.strict && count > 0) refuse("--strict: a warning is a fault");
}

design::Piece tap_piece(const Arguments& arguments, const lrasynth_profile& profile, int32_t level) {
  if (!design::has_taps(profile)) refuse("--motor: " + design::tap_fault(profile));
  const bool in_pattern = arguments.in_pattern && design::has_shares(profile.motor_type);
  return design::tap_piece(profile, level, arguments.intensity, in_pattern);
}

design::Piece pattern_piece(const Arguments& arguments, const lrasynth_profile& profile, const std::string& path,
                            const std::string& json) {
  const std::string name = std::filesystem::path(path).filename();
  auto [file, piece] = design::read_piece(profile, arguments.playback, json, name);
  if (!piece) refuse(CLI::detail::join(file.faults.lines(shown_path(path)), "\n"));
  return std::move(*piece);
}

// The stretch of time that is drawn.
design::Span shown(const Arguments& arguments, design::Span whole) {
  const design::Span part = design::part_of(whole, arguments.from_ms, arguments.to_ms);
  if (!(part.length() > 0)) refuse(text("--from, --to: nothing of 0 to %.6g ms lies between them", whole.to));
  return part;
}

// What an OUTPUT's ending or --format says, like ".wav".
std::string form_of(const Arguments& arguments, const std::string& path) {
  if (path != kStandardOutput) return ending_of(path);
  if (arguments.format.empty()) refuse("--format: OUTPUT - needs wav, svg, csv or bin");
  return "." + arguments.format;
}

void refuse_idle_outputs(const Arguments& arguments, bool tells) {
  const auto& paths = arguments.outputs;
  const auto none_is = [&](const char* form) {
    return std::none_of(paths.begin(), paths.end(), [&](const auto& path) { return form_of(arguments, path) == form; });
  };
  arguments.refuse_idle({"--format"}, std::count(paths.begin(), paths.end(), kStandardOutput) == 0, "without OUTPUT -");
  arguments.refuse_idle({"--audible"}, none_is(".wav"), "without a .wav file");
  arguments.refuse_idle({"--response"}, !tells && none_is(".svg"), "without an .svg file");
  arguments.refuse_idle({"--response-hz"}, !tells && !arguments.has("--response"), "without --response");
  arguments.refuse_idle({"--from", "--to"}, none_is(".svg"), "without an .svg file");
}

File file_of(const Arguments& arguments, const design::Piece& piece, const std::string& path) {
  const std::string form = form_of(arguments, path);
  if (piece.is_stream() && form != ".csv" && form != ".bin") {
    refuse("OUTPUT: " + design::shown(path) + " must end in .bin or .csv with --chip 11");
  }
  if (form == ".svg") {
    std::optional<design::Motion> motion;
    if (arguments.has("--response")) motion.emplace(piece.waveform, arguments.resonator);
    const design::Motion* const drawn = motion ? &*motion : nullptr;
    return text_file(path, plot_of(piece, drawn, shown(arguments, felt_span(piece.waveform, drawn))), size_of(piece));
  }
  const auto write = [&piece, form, audible = arguments.audible](Target& target) {
    const design::Sink sink = [&](std::string_view bytes) { return target.write(bytes); };
    if (form == ".wav" && audible) return write_audible_wav(piece.waveform, target);
    if (form == ".wav") return design::write_wav(piece, sink);
    (form == ".csv" ? design::write_csv : design::write_codes)(piece, sink);
  };
  return {path, write, size_of(piece)};
}

// Warns, then prints a summary where nothing is to be written, or writes every OUTPUT in the form that its ending says,
// and the other files with them.
void finish(const Arguments& arguments, const design::Piece& piece, std::vector<File> files = {}) {
  refuse_idle_outputs(arguments, files.empty() && arguments.outputs.empty());
  report(arguments, {&piece, 1});
  for (const std::string& path : arguments.outputs) files.push_back(file_of(arguments, piece, path));
  if (files.empty()) files.push_back(text_file(kStandardOutput, summary_of(piece, arguments.resonator)));
  write_files(files, arguments.files);
}

void run_tap(const Arguments& arguments) {
  finish(arguments, tap_piece(arguments, arguments.profiles().front(), arguments.level));
}

void run_pattern(const Arguments& arguments) {
  const lrasynth_profile profile = arguments.profiles().front();
  arguments.refuse_idle({"--interval"}, arguments.playback.loops == 1, "without --loop 2 or more");
  arguments.refuse_idle({"--interval", "--limit", "--response", "--response-hz"}, design::is_event_stream(profile),
                        "with --chip 11");
  const std::string& path = arguments.files.front();
  const design::Piece piece = pattern_piece(arguments, profile, path, content_of(path, design::kLargestFile + 1));
  std::vector<File> files;
  if (arguments.has("--save")) {
    const auto& events = piece.score->events();
    files.push_back(text_file(arguments.save_path, canonical_json(events),
                              design::counted(static_cast<int64_t>(events.size()), "event")));
  }
  if (arguments.print_request) files.push_back(text_file(kStandardOutput, design::c_array(piece.score->request())));
  finish(arguments, piece, std::move(files));
}

void run_tone(const Arguments& arguments) {
  const lrasynth_profile profile = arguments.profiles().front();
  const std::string fault = design::tone_fault(profile, arguments.frequency_hz, arguments.half_periods);
  if (!fault.empty()) refuse("--" + fault);
  finish(arguments, design::tone_piece(profile, arguments.frequency_hz, arguments.half_periods, arguments.amplitude));
}

void run_sheet(const Arguments& arguments) {
  const lrasynth_profile profile = arguments.profiles().front();
  const bool has_taps = design::has_taps(profile);
  arguments.refuse_idle({"--levels", "--intensity"}, !has_taps, "on this motor");
  std::vector<design::Piece> taps;
  for (const int32_t level : has_taps ? arguments.levels : std::vector<int32_t>()) {
    taps.push_back(tap_piece(arguments, profile, level));
  }
  report(arguments, taps);
  const design::Sheet sheet = {profile, arguments.levels, arguments.intensity, arguments.in_pattern};
  write_files({text_file(arguments.outputs.front(), sheet_of(sheet), title_of(sheet))});
}

// Patterns, or one tap, on every profile.
std::vector<design::Piece> pieces_of(const Arguments& arguments, const std::vector<lrasynth_profile>& profiles,
                                     const std::vector<std::string>& files) {
  constexpr size_t kMost = 12;
  std::vector<std::string> contents;
  for (const std::string& file : files) contents.push_back(content_of(file, design::kLargestFile + 1));
  std::vector<design::Piece> pieces;
  for (const lrasynth_profile& profile : profiles) {
    if (files.empty()) pieces.push_back(tap_piece(arguments, profile, arguments.level));
    for (size_t i = 0; i < files.size(); ++i)
      pieces.push_back(pattern_piece(arguments, profile, files[i], contents[i]));
    if (pieces.size() > kMost) refuse(text("at most %zu waveforms can be compared", kMost));
  }
  return pieces;
}

void run_compare(const Arguments& arguments) {
  std::vector<std::string> files = arguments.files;
  std::string picture;
  if (!files.empty() && ending_of(files.back()) == ".svg") {
    picture = files.back();
    files.pop_back();
  }
  if (std::count(files.begin(), files.end(), kStandardOutput) > 1) refuse("-: is named twice");
  const std::vector<lrasynth_profile> profiles = arguments.profiles();
  for (const lrasynth_profile& profile : profiles) {
    if (design::is_event_stream(profile)) refuse("--chip: 11 plays events, not a waveform");
  }
  arguments.refuse_idle({"--boost"}, files.empty(), "for taps");
  arguments.refuse_idle({"--level", "--intensity", "--in-pattern"}, !files.empty(), "beside a pattern");
  arguments.refuse_idle({"--from", "--to"}, picture.empty(), "without an .svg file");
  const std::vector<design::Piece> pieces = pieces_of(arguments, profiles, files);
  std::vector<design::Motion> motions;
  design::Span whole = {0, 0};
  report(arguments, pieces);
  for (const design::Piece& piece : pieces) {
    motions.emplace_back(piece.waveform, arguments.resonator);
    whole.to = std::max(whole.to, felt_span(piece.waveform, &motions.back()).to);
  }
  if (picture.empty()) return write_files({text_file(kStandardOutput, table_of(pieces, motions))});
  const std::string drawn = comparison_of(pieces, motions, shown(arguments, whole));
  write_files({text_file(picture, drawn, design::counted(static_cast<int64_t>(pieces.size()), "waveform"))}, files);
}

}  // namespace

std::vector<Command> commands() {
  const std::string view = "--response --response-hz --from --to --strict ";
  const std::string tap = "--level --intensity --in-pattern ";
  const std::string output = "OUTPUT --audible --format " + view;
  const std::string forms = design::kFormsHelp + std::string(R"(  -     standard output, as --format says
  Without OUTPUT the command tells what there is to know about the waveform.

)");
  const std::string example = "Example:\n  lrasynth ";
  return {
      {"tap", "Render one tap", "--motor --chip " + tap + output,
       forms + example + "tap --level 50 --intensity 80 --response tap.svg", run_tap},
      {"pattern", "Render a pattern of timed events",
       "FILE --motor --chip --boost --loop --interval --limit --save --print-request " + output,
       design::kPatternHelp + forms + example +
           "pattern heartbeat.json --loop 3 --interval 200 heartbeat.wav heartbeat.svg",
       run_pattern},
      {"tone", "Render a sine burst", "--frequency --half-periods --amplitude --chip " + output,
       forms + example + "tone --frequency 170 --half-periods 20 --amplitude 100 --audible tone.wav", run_tone},
      {"sheet", "Draw a motor model's taps and curves",
       "PICTURE --motor --chip --boost --levels --intensity --in-pattern --strict ",
       example + "sheet --motor 1040 --levels 0,20,40,60,80,100 sheet.svg", run_sheet},
      {"compare", "Draw patterns or a tap on several motors, chips, boost settings",
       "FILES --motor --chip --boost " + tap + view,
       R"(Motors, chips and boost settings may be lists, separated by commas.
Without an .svg file the numbers are printed as a table.

Examples:
  lrasynth compare --level 30 --motor 832,1040,9595 taps.svg
  lrasynth compare old.json new.json --motor 832 --boost on,off patterns.svg)",
       run_compare},
  };
}

}  // namespace command
