// SPDX-License-Identifier: Apache-2.0
// What the commands' arguments have in common.
#include "options.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <limits>
#include <optional>

#include "design/forms.h"
#include "design/motor.h"
#include "design/plot.h"
#include "design/summary.h"
#include "design/text.h"

namespace command {

using design::shown;
using design::text;

const char* const kOutputHelp = R"(OUTPUT:
  .wav  mono, 16 bits, the amplitude in the upper byte
  .svg  a plot
  .csv  number, time in ms, sample code and amplitude of every sample
  .bin  the sample codes
  -     standard output, as --format says
  Without OUTPUT the command tells what there is to know about the waveform.

)";

CLI::Validator number_in(int32_t least, int32_t most) {
  const auto check = [=](std::string& word) -> std::string {
    const std::optional<int32_t> number = design::whole_number(word);
    if (!number || *number < least || *number > most) {
      return design::range_fault(least, most, design::echo(word));
    }
    word = std::to_string(*number);  // CLI11 takes 010 for 8
    return "";
  };
  return CLI::Validator(check, text("%d..%d", least, most));
}

CLI::Validator one_of(const std::string& words) {
  const auto check = [all = CLI::detail::split(words, '|')](std::string& word) -> std::string {
    if (std::find(all.begin(), all.end(), word) != all.end()) return "";
    return "must be " + design::alternatives(all) + ", not " + design::echo(word);
  };
  return CLI::Validator(check, words);
}

std::string motor_words() { return CLI::detail::join(design::kMotors, "|"); }

CLI::Validator output_in(const std::string& endings) {
  const auto check = [all = CLI::detail::split(endings, '|')](const std::string& path) -> std::string {
    const bool fits = path == kStandardOutput || std::find(all.begin(), all.end(), ending_of(path)) != all.end();
    return fits ? "" : design::echo(path) + " must end in " + design::alternatives(all) + ", or be -";
  };
  return CLI::Validator(check, "");
}

std::string ending_of(const std::string& path) {
  return CLI::detail::to_lower(std::filesystem::path(path).extension().string());
}

void refuse_idle(const CLI::App& command, std::initializer_list<const char*> options, bool idle, const char* why) {
  for (const char* option : options) {
    const bool given = command.get_option_no_throw(option) != nullptr && command.count(option) > 0;
    if (idle && given) throw Failure(kWrongInput, option + std::string(": does nothing ") + why);
  }
}

void check_length(const std::string& options, double length_ms) {
  const std::string fault = design::length_fault(length_ms);
  if (!fault.empty()) throw Failure(kWrongInput, options + ": " + fault);
}

void Device::add(CLI::App& command, bool with_motor, bool with_boost) {
  if (with_motor) command::add(command, "--motor", motor, "Motor model", one_of(motor_words()));
  command::add(command, "--chip", chip, "Chip type: 0 has 24000 samples a second, 1 12000, 11 plays events",
               chip_number());
  if (with_boost) command::add(command, "--boost", boost, "Boost of motor 832", one_of("on|off"));
}

lrasynth_profile Device::profile(const CLI::App& command) const {
  const lrasynth_profile profile = profile_of(motor, chip, boost);
  refuse_idle(command, {"--boost"}, !design::has_boost(profile.motor_type), "on this motor");
  refuse_idle(command, {"--in-pattern"}, !design::has_shares(profile.motor_type), "on this motor");
  return profile;
}

CLI::Validator chip_number() { return number_in(0, std::numeric_limits<int32_t>::max()).description("0|1|11|..."); }

lrasynth_profile profile_of(const std::string& motor, int32_t chip, const std::string& boost) {
  if (!design::is_chip(chip)) std::cerr << text("lrasynth: note: --chip: type %d acts as 0\n", chip);
  return lrasynth_profile_of(chip, *design::whole_number(motor), boost == "on" ? 1 : 0);
}

void Tap::add(CLI::App& command, bool with_level) {
  if (with_level) command::add(command, "--level", level, "Character of the tap", number_in(0, 100));
  command::add(command, "--intensity", intensity, "Strength in percent", number_in(0, 100));
  command.add_flag("--in-pattern", in_pattern,
                   "As weak as a pattern plays it: motor 1040 takes a level's share of the intensity there");
}

design::Piece tap_piece(const lrasynth_profile& profile, const Tap& tap) {
  if (!design::has_taps(profile)) throw Failure(kWrongInput, "--motor: " + design::tap_fault(profile));
  return design::tap_piece(profile, tap.level, tap.intensity, tap.in_pattern && design::has_shares(profile.motor_type));
}

std::vector<design::Event> read_events(const std::string& path, const lrasynth_profile& profile,
                                       const design::Playback& playback) {
  design::PatternFile file = design::read_pattern(content_of(path, design::kLargestFile + 1));
  add_faults(file.events, profile, playback, file.faults);
  if (file.faults.count == 0) return file.events;
  throw Failure(kWrongInput, CLI::detail::join(file.faults.lines(shown_path(path)), "\n"));
}

void View::add(CLI::App& command) {
  const auto time = number_in(0, design::kLongestMs);
  command::add(command, "--response", quality, "Estimate the motor's displacement; Q: quality factor",
               number_in(1, 1000))
      ->type_name("[Q]");
  command::add(command, "--response-hz", response_hz, "Resonance of that estimate; 0: the motor's", number_in(0, 2000));
  command::add(command, "--from", from_ms, "Draw from this time in ms", time);
  command::add(command, "--to", to_ms, "Draw up to this time in ms; 0: to the end", time);
  command.add_flag("--strict", strict, "Take warnings for faults");
}

design::Span View::shown(design::Span whole) const {
  const design::Span part = design::part_of(whole, from_ms, to_ms);
  if (part.length() > 0) return part;
  throw Failure(kWrongInput, text("--from, --to: nothing of 0 to %.6g ms lies between them", whole.to));
}

void View::report(const design::Piece& piece, const std::string& prefix) const {
  for (const design::Warning& warning : piece.warnings) {
    std::cerr << "lrasynth: warning: " << prefix << line_of(warning) << '\n';
  }
  if (strict && !piece.warnings.empty()) throw Failure(kWrongInput, "--strict: a warning is a fault");
}

void Outputs::add(CLI::App& command) {
  view.add(command);
  command.add_flag("--audible", audible, "WAV at 48000 samples a second, for players that refuse less");
  command::add(command, "--format", format, "Form of OUTPUT -", one_of("wav|svg|csv|bin"))->default_str("");
  add_files(command, "OUTPUT", paths, "Files to write, in the form that their ending says, see below")
      ->check(output_in(".wav|.svg|.csv|.bin"));
}

// What an OUTPUT's ending or --format says, like ".wav".
std::string Outputs::form(const std::string& path) const {
  if (path != kStandardOutput) return ending_of(path);
  if (format.empty()) throw Failure(kWrongInput, "--format: OUTPUT - needs wav, svg, csv or bin");
  return "." + format;
}

void Outputs::refuse_idle_options(const CLI::App& command, bool tells) const {
  const auto none_is = [&](const char* ending) {
    return std::none_of(paths.begin(), paths.end(), [&](const std::string& path) { return form(path) == ending; });
  };
  const bool no_dash = std::find(paths.begin(), paths.end(), kStandardOutput) == paths.end();
  refuse_idle(command, {"--format"}, no_dash, "without OUTPUT -");
  refuse_idle(command, {"--audible"}, none_is(".wav"), "without a .wav file");
  tells = tells && paths.empty();
  refuse_idle(command, {"--response"}, !tells && none_is(".svg"), "without an .svg file");
  refuse_idle(command, {"--response-hz"}, !tells && command.count("--response") == 0, "without --response");
  refuse_idle(command, {"--from", "--to"}, none_is(".svg"), "without an .svg file");
}

File Outputs::file(const CLI::App& command, const design::Piece& piece, const std::string& path) const {
  const std::string ending = form(path);
  const bool responds = command.count("--response") > 0;
  if (piece.is_stream() && ending != ".csv" && ending != ".bin") {
    throw Failure(kWrongInput, "OUTPUT: " + shown(path) + " must end in .bin or .csv with --chip 11");
  }
  if (ending == ".svg") {
    const auto resonator = responds ? std::optional(view.resonator()) : std::nullopt;
    const design::Span shown = view.shown(felt_span(piece.waveform, resonator));
    return text_file(path, plot_of(piece, resonator, shown), size_of(piece));
  }
  const auto write = [&piece, ending, audible = audible](Target& target) {
    const design::Sink sink = [&](std::string_view bytes) { target.write(bytes); };
    if (ending == ".wav" && audible) return write_audible_wav(piece.waveform, target);
    if (ending == ".wav") return design::write_wav(piece, sink);
    (ending == ".csv" ? design::write_csv : design::write_codes)(piece, sink);
  };
  return {path, write, size_of(piece)};
}

void Outputs::finish(const CLI::App& command, const design::Piece& piece, std::vector<File> others,
                     const std::vector<std::string>& inputs) const {
  refuse_idle_options(command, others.empty());
  view.report(piece);
  std::vector<File> files = std::move(others);
  for (const std::string& path : paths) files.push_back(file(command, piece, path));
  if (files.empty()) files.push_back(text_file(kStandardOutput, summary_of(piece, view.resonator())));
  write_files(files, inputs);
}

}  // namespace command
