// SPDX-License-Identifier: Apache-2.0
// What each command does.
#include "arguments.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <span>

#include "design/advice/summary.h"
#include "design/base/text.h"
#include "design/formats/formats.h"
#include "design/picture/forms.h"
#include "design/picture/plot.h"
#include "design/picture/sheet.h"
#include "options.h"
#include "sound.h"

namespace command {
namespace {

using design::text;

// What an event stream cannot go with.
std::string with_chip_of(const lrasynth_profile& profile) { return text("with --chip %d", profile.chip_type); }

// Prints the warnings of all, and ends the command where they are faults.
void report(const Arguments& arguments, std::span<const design::Piece> pieces) {
  std::vector<std::string> lines;
  for (size_t i = 0; i < pieces.size(); ++i) {
    const std::string name = pieces.size() == 1 ? "" : text("%zu: ", i + 1) + pieces[i].waveform.title + ": ";
    for (const std::string& line : lines_of(pieces[i].warnings)) lines.push_back(name + line);
  }
  const size_t listed = std::min(lines.size(), design::kMostWarningsListed + 1);
  const size_t told = lines.size() > listed ? listed - 1 : listed;
  for (size_t i = 0; i < told; ++i) std::cerr << "lrasynth: warning: " << lines[i] << '\n';
  if (told < lines.size())
    std::cerr << text("lrasynth: warning: and %zu more lines of warnings\n", lines.size() - told);
  if (arguments.strict && !lines.empty()) refuse("--strict: a warning is a fault");
}

design::Piece tap_piece(const Arguments& arguments, const lrasynth_profile& profile, int32_t level) {
  if (!design::has_taps(profile)) refuse("--motor: " + design::tap_fault(profile));
  const bool in_pattern = arguments.in_pattern && design::has_shares(profile);
  return design::tap_piece(profile, level, arguments.intensity, in_pattern, arguments.resonator);
}

// A pattern file: its path, what titles call it, and its text, or its sound.
struct PatternInput {
  std::string path;
  std::string name;
  std::string text = {};
  Input sound = nullptr;
};

PatternInput read_input(const std::string& path, const std::string& name) {
  PatternInput pattern = {.path = path, .name = name};
  const Input input = opened(path);
  pattern.text = bytes_of(input, path, design::kLargestFile + 1);
  if (is_sound(pattern.text)) pattern.sound = sound_in(input, pattern.text, path);
  return pattern;
}

// Files are called by as much of their paths as tells them apart.
std::vector<PatternInput> read_patterns(const Arguments& arguments, const std::vector<std::string>& paths) {
  std::vector<std::filesystem::path> whole;
  for (const std::string& path : paths) whole.push_back(std::filesystem::path(path).lexically_normal());
  const auto tail = [](const std::filesystem::path& path, size_t parts) {
    const auto count = static_cast<size_t>(std::distance(path.begin(), path.end()));
    std::filesystem::path name;
    for (auto part = std::next(path.begin(), static_cast<ptrdiff_t>(count - std::min(count, parts)));
         part != path.end(); ++part) {
      name /= *part;
    }
    return name;
  };
  std::vector<PatternInput> patterns;
  for (size_t i = 0; i < paths.size(); ++i) {
    const auto depth = static_cast<size_t>(std::distance(whole[i].begin(), whole[i].end()));
    size_t parts = 1;
    const auto is_twin = [&](const std::filesystem::path& other) {
      return other != whole[i] && tail(other, parts) == tail(whole[i], parts);
    };
    while (parts < depth && std::any_of(whole.begin(), whole.end(), is_twin)) ++parts;
    patterns.push_back(read_input(paths[i], tail(whole[i], parts)));
  }
  const bool has_sound = std::any_of(patterns.begin(), patterns.end(), [](auto& one) { return one.sound != nullptr; });
  arguments.refuse_idle({"--taps", "--curves", "--floor", "--gain"}, !has_sound, "without sound");
  return patterns;
}

void note(const std::string& path, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    std::cerr << "lrasynth: note: " << shown_path(path) << ": " << line << '\n';
  }
}

// What a format cannot say, which may be a fault.
void note_losses(const Arguments& arguments, const std::string& path, const std::vector<std::string>& lines) {
  note(path, lines);
  if (arguments.strict && !lines.empty()) refuse("--strict: what is lost is a fault");
}

design::PatternFile file_of(const Arguments& arguments, const lrasynth_profile& profile, const PatternInput& pattern) {
  if (pattern.sound == nullptr) return design::read_file(pattern.text, design::Tuning(profile));
  design::SoundOptions options = arguments.sound;
  options.taps = arguments.taps_alone || !arguments.curves_alone;
  options.curves = arguments.curves_alone || !arguments.taps_alone;
  return design::file_of(drawing_of_sound(pattern.sound, pattern.path, options, profile));
}

// What is asked for overrides what the file says.
design::Piece pattern_piece(const Arguments& arguments, const design::Setup& asked, const PatternInput& pattern) {
  auto [setup, file, piece] =
      design::piece_of(asked, file_of(arguments, asked.profile(), pattern), pattern.name, arguments.resonator);
  if (!piece) {
    std::string lines;
    for (const std::string& line : file.faults.lines(shown_path(pattern.path))) lines += line + '\n';
    refuse(lines);
  }
  note(pattern.path, file.notes);
  note_losses(arguments, pattern.path, file.losses);
  return std::move(*piece);
}

[[noreturn]] void refuse_span(design::Span whole) {
  if (!(whole.length() > 0)) refuse("there is nothing to draw: it lasts 0 ms");
  refuse(text("--from, --to: nothing of 0 to %.6g ms lies between them", whole.to));
}

// What an OUTPUT's ending or --format says.
const design::Form& form_of(const Arguments& arguments, const std::string& path) {
  const std::string name = path == kStandardOutput ? arguments.format : ending_of(path).substr(1);
  if (name.empty()) refuse("--format: OUTPUT - needs " + design::listed(design::file_forms("")));
  return *design::form_named(name);
}

// Tells: numbers are printed. Felt: what is driven hangs on what is to be felt.
void refuse_idle_outputs(const Arguments& arguments, bool tells, bool felt) {
  const auto& paths = arguments.outputs;
  const auto none_is = [&](const char* form) {
    return std::none_of(paths.begin(), paths.end(),
                        [&](const auto& path) { return form_of(arguments, path).name == std::string_view(form); });
  };
  arguments.refuse_idle({"--format"}, std::count(paths.begin(), paths.end(), kStandardOutput) == 0, "without OUTPUT -");
  arguments.refuse_idle({"--audible"}, none_is("wav"), "without a .wav file");
  arguments.refuse_idle({"--response", "--response-hz", "--rated"},
                        !felt && !tells && none_is("svg") && none_is("felt.csv"), "without an .svg or .felt.csv file");
  arguments.refuse_idle({"--from", "--to", "--title"}, none_is("svg"), "without an .svg file");
}

File file_of(const Arguments& arguments, const design::Piece& piece, const std::string& path) {
  const design::Form& form = form_of(arguments, path);
  if (path == kStandardOutput && !form.is_text && ::isatty(STDOUT_FILENO) == 1) {
    refuse(text("-: standard output is a terminal, which %s would garble: send it to a file or a program", form.name));
  }
  if (!suits(form, piece)) {
    const std::string with_chip = " " + with_chip_of(piece.waveform.profile);
    if (path == kStandardOutput)
      refuse("--format: must be " + design::listed(design::file_forms("", true)) + with_chip);
    refuse("OUTPUT: " + design::shown(path) + " must end in " + design::listed(design::file_forms(".", true)) +
           with_chip);
  }
  std::shared_ptr<const design::Motion> motion;
  const bool is_picture = form.name == std::string_view("svg");
  if (is_picture && arguments.has("--response")) {
    motion = std::make_shared<const design::Motion>(piece.waveform, arguments.resonator);
  }
  const double from_ms = arguments.from_ms;
  const double to_ms = arguments.to_ms;
  const design::View view = {motion.get(), arguments.resonator, from_ms, to_ms};
  if (is_picture && !shown_span(piece, view)) refuse_span(felt_span(piece.waveform, motion.get()));
  const bool is_audible = arguments.audible && form.name == std::string_view("wav");
  const auto write = [&piece, &form, view, motion, is_audible](Target& target) {
    if (is_audible) return write_audible_wav(piece.waveform, target);
    form.write(piece, view, [&](std::string_view bytes) { return target.write(bytes); });
  };
  return {path, write, is_audible ? audible_size_of(piece.waveform) : size_of(piece.waveform)};
}

bool is_felt(const design::Piece& piece) {
  if (piece.score == nullptr) return false;
  const auto& events = piece.score->events();
  return std::any_of(events.begin(), events.end(), [](const design::Event& event) { return event.is_felt(); });
}

// Warns, then prints a summary where nothing is to be written, or writes every OUTPUT in the form that its ending says,
// and the other files with them.
void finish(const Arguments& arguments, design::Piece piece, std::vector<File> files = {}) {
  if (!arguments.title.empty()) piece.waveform.title = arguments.title;
  refuse_idle_outputs(arguments, files.empty() && arguments.outputs.empty(), is_felt(piece));
  report(arguments, {&piece, 1});
  for (const std::string& path : arguments.outputs) files.push_back(file_of(arguments, piece, path));
  if (files.empty()) files.push_back(text_file(kStandardOutput, summary_of(piece, arguments.resonator)));
  write_files(files, arguments.files);
}

void run_tap(const Arguments& arguments) {
  finish(arguments, tap_piece(arguments, arguments.profiles().front(), arguments.level));
}

// The pattern again, in one form, or as what it is made of.
File saved_file(const Arguments& arguments, const design::Piece& piece, const std::string& from) {
  const design::Score& score = *piece.score;
  if (design::has_comments(*piece.source)) {
    std::cerr << "lrasynth: note: " << from << ": its comments are not saved\n";
  }
  const std::string json =
      arguments.flat ? flat_json(score.events(), score.profile(), score.playback()) : canonical_json(*piece.source);
  return text_file(arguments.save_path, json, design::counted(static_cast<int64_t>(score.events().size()), "event"));
}

void run_pattern(const Arguments& arguments) {
  arguments.refuse_idle({"--flat"}, !arguments.has("--save"), "without --save");
  const PatternInput pattern = read_patterns(arguments, arguments.files).front();
  const design::Piece piece = pattern_piece(arguments, arguments.setup(), pattern);
  const lrasynth_profile& profile = piece.score->profile();
  arguments.note_profiles({profile});
  arguments.refuse_idle({"--interval"}, piece.score->playback().loops == 1, "without --loop 2 or more");
  arguments.note_idle({"--interval", "--limit", "--response", "--response-hz", "--rated"},
                      design::is_event_stream(profile), with_chip_of(profile));
  std::vector<File> files;
  if (arguments.has("--save")) files.push_back(saved_file(arguments, piece, shown_path(pattern.path)));
  if (arguments.print_request) files.push_back(text_file(kStandardOutput, design::c_array(piece.score->request())));
  finish(arguments, piece, std::move(files));
}

void run_tone(const Arguments& arguments) {
  const lrasynth_profile profile = arguments.profiles().front();
  const std::string fault = design::tone_fault(profile, arguments.frequency_hz, arguments.half_periods);
  if (!fault.empty()) refuse("--" + fault);
  finish(arguments, design::tone_piece(profile, arguments.frequency_hz, arguments.half_periods, arguments.amplitude,
                                       arguments.resonator));
}

void run_sheet(const Arguments& arguments) {
  const lrasynth_profile profile = arguments.profiles().front();
  const bool has_taps = design::has_taps(profile);
  arguments.note_idle({"--levels", "--intensity"}, !has_taps, "on this motor");
  std::vector<design::Piece> taps;
  for (const int32_t level : has_taps ? arguments.levels : std::vector<int32_t>()) {
    taps.push_back(tap_piece(arguments, profile, level));
  }
  report(arguments, taps);
  const bool in_pattern = arguments.in_pattern && design::has_shares(profile);
  const design::Sheet sheet = {profile, arguments.levels, arguments.intensity, in_pattern, arguments.title};
  write_files({text_file(arguments.outputs.front(), sheet_of(sheet), title_of(sheet))});
}

// Of one of the profiles, as far as it is asked for.
design::Setup setup_of(const Arguments& arguments, const lrasynth_profile& profile) {
  design::Setup setup = arguments.setup();
  if (setup.motor) setup.motor = profile.motor_type;
  if (setup.chip) setup.chip = profile.chip_type;
  if (setup.boost) setup.boost = profile.boost_flag;
  return setup;
}

// Patterns, or one tap, on every profile.
std::vector<design::Piece> pieces_of(const Arguments& arguments, const std::vector<lrasynth_profile>& profiles,
                                     const std::vector<std::string>& files) {
  constexpr size_t kMost = 12;
  const std::vector<PatternInput> patterns = read_patterns(arguments, files);
  std::vector<design::Piece> pieces;
  for (const lrasynth_profile& profile : profiles) {
    if (files.empty()) pieces.push_back(tap_piece(arguments, profile, arguments.level));
    for (const PatternInput& pattern : patterns)
      pieces.push_back(pattern_piece(arguments, setup_of(arguments, profile), pattern));
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
    if (design::is_event_stream(profile)) refuse(text("--chip: %d plays events, not a waveform", profile.chip_type));
  }
  arguments.refuse_idle({"--boost"}, files.empty(), "for taps");
  arguments.refuse_idle({"--level", "--intensity", "--in-pattern"}, !files.empty(), "beside a pattern");
  arguments.refuse_idle({"--from", "--to", "--title"}, picture.empty(), "without an .svg file");
  const std::vector<design::Piece> pieces = pieces_of(arguments, profiles, files);
  std::vector<design::Motion> motions;
  std::vector<design::Felt> felts;
  design::Span whole = {0, 0};
  report(arguments, pieces);
  for (const design::Piece& piece : pieces) {
    motions.emplace_back(piece.waveform, arguments.resonator);
    felts.emplace_back(piece.waveform, arguments.resonator);
    whole.to = std::max(whole.to, felt_span(piece.waveform, &motions.back()).to);
  }
  if (picture.empty()) return write_files({text_file(kStandardOutput, table_of(pieces, motions, felts))});
  const std::string title = arguments.title.empty() ? "Comparison" : arguments.title;
  const design::Span shown = design::part_of(whole, arguments.from_ms, arguments.to_ms);
  if (!(shown.length() > 0)) refuse_span(whole);
  const std::string drawn = comparison_of(title, pieces, motions, felts, shown);
  write_files({text_file(picture, drawn, design::counted(static_cast<int64_t>(pieces.size()), "waveform"))}, files);
}

// What OUTPUT's ending or --format says.
const design::Format& format_of(const Arguments& arguments, const std::string& path) {
  const bool is_printed = path == kStandardOutput;
  if (is_printed && arguments.format.empty()) {
    refuse("--format: OUTPUT - needs " + design::listed(written_formats(&design::Format::name)));
  }
  arguments.refuse_idle({"--format"}, !is_printed, "without OUTPUT -");
  return is_printed ? *design::format_named(arguments.format) : *design::format_of_path(path);
}

void run_convert(const Arguments& arguments) {
  const std::string& output = arguments.outputs.front();
  const design::Format& format = format_of(arguments, output);
  const PatternInput pattern = read_patterns(arguments, arguments.files).front();
  arguments.refuse_idle({"--from", "--to"}, pattern.sound == nullptr, "without sound");
  const design::SoundOptions& sound = arguments.sound;
  if (sound.to_ms > 0 && sound.to_ms <= sound.from_ms) refuse("--from, --to: nothing lies between them");
  const design::Piece piece = pattern_piece(arguments, arguments.setup(), pattern);
  const design::Score& score = *piece.score;
  arguments.note_profiles({score.profile()});
  if (design::is_event_stream(score.profile())) {
    refuse(text("--chip: %d plays events, not a waveform", score.profile().chip_type));
  }
  design::Losses losses;
  const bool is_ours = &format == design::formats().data();
  arguments.refuse_idle({"--felt"}, !is_ours, "without a .json file");
  const auto& events = score.events();
  const bool is_felt = std::any_of(events.begin(), events.end(), [](auto& event) { return event.is_felt(); });
  arguments.refuse_idle({"--response", "--response-hz", "--rated"}, !arguments.felt && !is_felt, "without --felt");
  std::string content = arguments.felt ? felt_json(score, *piece.source, arguments.resonator, losses)
                                       : format.write(score, *piece.source, losses);
  note_losses(arguments, output, losses.lines());
  const std::string size = design::counted(static_cast<int64_t>(content.size()), "byte");
  write_files({text_file(output, std::move(content), size)}, arguments.files);
}

void run_completion(const Arguments& arguments) {
  write_files({text_file(kStandardOutput, completion_for(arguments.shell, *arguments.command->get_parent()))});
}

// What each command takes.

void declare_tap(Options& options) {
  options.motor();
  options.chip();
  options.tap();
  options.output();
}

void declare_pattern(Options& options) {
  options.pattern_file();
  options.motor();
  options.chip();
  options.boost();
  options.passes();
  options.sound();
  options.saving();
  options.output();
}

void declare_convert(Options& options) {
  options.pattern_file();
  options.converted_file();
  options.felt();
  options.motor();
  options.chip();
  options.boost();
  options.sound();
  options.sound_part();
}

void declare_tone(Options& options) {
  options.tone();
  options.chip();
  options.output();
}

void declare_sheet(Options& options) {
  options.picture_file();
  options.motor();
  options.chip();
  options.boost();
  options.levels();
  options.picture_view();
}

void declare_compare(Options& options) {
  options.pattern_files();
  options.motor();
  options.chip();
  options.boost();
  options.tap();
  options.sound();
  options.view();
}

void declare_completion(Options& options) { options.shell(); }

}  // namespace

std::vector<Command> commands() {
  const std::string forms = design::forms_help() + R"(  -     standard output, as --format says
  Without OUTPUT the command tells what there is to know about the waveform.

)";
  const std::string example = "Example:\n  lrasynth ";
  return {
      {"tap", "Render one tap", declare_tap, false,
       forms + example + "tap --level 50 --intensity 80 --response tap.svg", run_tap},
      {"pattern", "Render a pattern of timed events", declare_pattern, false,
       design::kPatternHelp + forms + example +
           "pattern heartbeat.json --loop 3 --interval 200 heartbeat.wav heartbeat.svg",
       run_pattern},
      {"convert", "Turn patterns into other forms, and those of others into patterns", declare_convert, false,
       design::formats_help() +
           R"(Besides, FILE may be sound: WAV, FLAC, Ogg, AIFF, AU or CAF, 256 MiB and 10 minutes at most. Its onsets become taps, and
its envelope curves. What a form cannot say is left out, with a note; --strict makes that a fault.

)" + example +
           "convert clip.ahap clip.json\n  lrasynth convert clip.json --format xml -\n"
           "  lrasynth convert drums.wav drums.json --floor -30 --to 4000",
       run_convert},
      {"tone", "Render a sine burst", declare_tone, false,
       forms + example + "tone --frequency 170 --half-periods 20 --amplitude 100 --audible tone.wav", run_tone},
      {"sheet", "Draw a motor model's taps and curves", declare_sheet, false,
       example + "sheet --motor 1040 --levels 0,20,40,60,80,100 sheet.svg", run_sheet},
      {"compare", "Draw patterns or a tap on several motors, chips, boost settings", declare_compare, true,
       R"(Motors, chips and boost settings may be lists, separated by commas; 12 waveforms at most.
Without an .svg file the numbers are printed as a table.

Examples:
  lrasynth compare --level 30 --motor 832,1040,9595 taps.svg
  lrasynth compare old.json new.json --motor 832 --boost on,off patterns.svg)",
       run_compare},
      {"completion", "Print what makes a shell complete these words", declare_completion, false,
       "Example:\n  lrasynth completion bash > ~/.local/share/bash-completion/completions/lrasynth", run_completion},
  };
}

}  // namespace command
