// SPDX-License-Identifier: Apache-2.0
// The options, each declared once.
#include "options.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "design/base/text.h"
#include "design/formats/formats.h"
#include "design/picture/forms.h"

namespace command {
namespace {

using design::text;
using Words = std::vector<std::string>;

std::string joined(const Words& words, char between) {
  std::string line;
  for (const std::string& word : words) line += (line.empty() ? "" : std::string(1, between)) + word;
  return line;
}

// A default as people would type it.
std::string typed(const std::string& word) { return word; }
std::string typed(double number) { return text("%.10g", number); }
template <class Value>
std::string typed(const std::vector<Value>& values) {
  Words words;
  for (const Value& value : values) words.push_back(typed(value));
  return joined(words, ',');
}

// Decimal numbers in a range, and known words. What is none of them is refused with what would be right.

CLI::Validator number_in(int32_t least, int32_t most) {
  const auto check = [=](std::string& word) -> std::string {
    const std::optional<int32_t> number = design::whole_number(word);
    if (!number || *number < least || *number > most) return design::range_fault(least, most, design::echo(word));
    word = std::to_string(*number);  // CLI11 takes 010 for 8
    return "";
  };
  return CLI::Validator(check, text("%d..%d", least, most));
}

// With a fraction, perhaps.
std::optional<double> decimal(const std::string& word) {
  const size_t dot = word.find('.');
  const std::string whole = word.substr(0, dot);
  const std::string part = dot == std::string::npos ? "0" : word.substr(dot + 1);
  const bool is_plain = !part.empty() && part.find_first_not_of("0123456789") == std::string::npos;
  if (!is_plain || word.size() > 20 || !design::whole_number(whole)) return std::nullopt;
  return std::stod(word);
}

// A word may stand for 0.
CLI::Validator decimal_in(double least, double most, const std::string& word_of_zero = "") {
  const auto check = [=](std::string& word) -> std::string {
    if (!word_of_zero.empty() && word == word_of_zero) return word = "0", "";
    const std::optional<double> number = decimal(word);
    if (number && *number >= least && *number <= most) return "";
    return text("must be a number from %g to %g, ", least, most) +
           (word_of_zero.empty() ? "" : "or " + word_of_zero + ", ") + "not " + design::echo(word);
  };
  return CLI::Validator(check, text("%g..%g", least, most));
}

CLI::Validator one_of(const Words& words) {
  const auto check = [words](const std::string& word) -> std::string {
    if (std::find(words.begin(), words.end(), word) != words.end()) return "";
    return "must be " + design::listed(words) + ", not " + design::echo(word);
  };
  return CLI::Validator(check, joined(words, '|'));
}

CLI::Validator output_in(const Words& endings) {
  const auto check = [endings](const std::string& path) -> std::string {
    const bool fits =
        path == kStandardOutput || std::find(endings.begin(), endings.end(), ending_of(path)) != endings.end();
    return fits ? "" : design::echo(path) + " must end in " + design::listed(endings) + ", or be -";
  };
  return CLI::Validator(check, "");
}

CLI::Validator time() { return number_in(0, design::kLongestMs); }

Words motor_words() {
  Words words;
  for (const int32_t motor : design::motors()) words.push_back(std::to_string(motor));
  return words;
}

bool is_stream(int32_t chip) { return design::is_event_stream(lrasynth_profile_of(chip, 0, 0)); }

std::string chip_help() {
  std::string help = "Chip type: ";
  for (const int32_t chip : design::chips()) {
    const int32_t rate = lrasynth_profile_of(chip, 0, 0).sample_rate;
    help +=
        text("%d ", chip) + (is_stream(chip) ? "plays events by itself, " : text("has %d samples a second, ", rate));
  }
  return help + "others act as 0";
}

// Those that render samples, and those that play events by themselves.
std::string chip_words(bool with_streams) {
  Words words;
  for (const int32_t chip : design::chips()) {
    if (with_streams || !is_stream(chip)) words.push_back(std::to_string(chip));
  }
  words.emplace_back("...");
  return joined(words, '|');
}

}  // namespace

template <class Value>
CLI::Option* Options::add(const char* name, Value& value, const std::string& help, CLI::Validator kind) {
  CLI::Option* const option = app_.add_option(name, value, help)->type_name(kind.get_description());
  return option->transform(kind.description(""))->delimiter(',')->allow_extra_args(false)->default_str(typed(value));
}

template <class Value>
void Options::add_list(const char* name, Value& values, const std::string& help, const CLI::Validator& kind) {
  constexpr int kMost = 1 << 29;  // with which CLI11 leaves the next word alone
  add(name, values, help, kind)->expected(1, lists_ ? kMost : 1);
}

template <class Value>
CLI::Option* Options::add_positional(const char* name, Value& value, const char* help) {
  return app_.add_option(name, value, help)->type_name("");
}

void Options::flag(const char* name, bool& value, const char* help) {
  app_.add_flag(name, value, help)->disable_flag_override();
}

void Options::motor() { add_list("--motor", arguments_.motors, "Motor model", one_of(motor_words())); }

void Options::chip() {
  add_list("--chip", arguments_.chips, chip_help(),
           number_in(0, std::numeric_limits<int32_t>::max()).description(chip_words(!lists_)));
}

void Options::boost() {
  add_list("--boost", arguments_.boosts,
           "Boost of motor 832: on spans 200 to 300 Hz instead of 220 to 250 and is weaker, half as strong at offset 0",
           one_of({"on", "off"}));
}

void Options::intensity() {
  add("--intensity", arguments_.intensity, "Strength in percent of full scale", number_in(0, 100));
}

void Options::in_pattern() {
  flag("--in-pattern", arguments_.in_pattern,
       "As weak as a pattern plays it: motor 1040 takes a level's share of the intensity there");
}

void Options::tap() {
  add("--level", arguments_.level, "Character of the tap: 0 is dull, 50 the motor's resonance, 100 crisp",
      number_in(0, 100));
  intensity();
  in_pattern();
}

void Options::levels() {
  add("--levels", arguments_.levels, "Levels, separated by commas", number_in(0, 100));
  intensity();
  in_pattern();
}

void Options::tone() {
  const auto required = [&](const char* name, int32_t& value, const char* help, const CLI::Validator& kind) {
    add(name, value, help, kind)->required()->default_str("");
  };
  required("--frequency", arguments_.frequency_hz, "In Hz, up to half the sample rate", number_in(1, 12000));
  required("--half-periods", arguments_.half_periods, "How many half waves", number_in(1, 1'000'000));
  required("--amplitude", arguments_.amplitude, "In sample units", number_in(0, 127));
}

void Options::passes() {
  add("--loop", arguments_.playback.loops, "How often it plays", number_in(1, 65535));
  add("--interval", arguments_.playback.interval_ms, "Silence between two passes in ms", time());
  add("--limit", arguments_.playback.limit_ms,
      "Latest start of a vibration in ms; below the end of the pattern it can cut a last tap", time())
      ->default_str("");
}

void Options::saving() {
  app_.add_option("--save", arguments_.save_path, "Write the checked pattern in canonical form to this file, or -")
      ->type_name("FILE")
      ->check([](const std::string& path) {
        return path.empty() || path.starts_with("--") ? "must be a file, or -, not " + design::echo(path) : "";
      });
  flag("--flat", arguments_.flat, "Have --save write what the pattern is made of, a record an entry");
  flag("--print-request", arguments_.print_request, "Print the pattern as an array for a C host");
}

void Options::picture_view() {
  app_.add_option("--title", arguments_.title, "Title of the picture")->type_name("TEXT");
  flag("--strict", arguments_.strict, "Take warnings for faults");
}

void Options::estimate(const char* response) {
  add("--response", arguments_.resonator.quality, response, decimal_in(1, 1000, kMotorsOwn).description("[Q]"))
      ->default_str(kMotorsOwn);
  add("--response-hz", arguments_.resonator.hz, "Resonance of what is estimated in Hz, up to 2000; 0: the motor's",
      number_in(0, 2000));
  add("--rated", arguments_.resonator.rated_g,
      "Acceleration in g of a lasting full-scale tone at the resonance, for what is felt", decimal_in(0.001, 1000));
}

void Options::felt() {
  flag("--felt", arguments_.felt,
       "Have .json say what is estimated to be felt of each event, so that other motors are driven for the same");
  estimate("Q: quality factor of that estimate, 1 to 1000, or motor: the one that its gains imply");
}

void Options::view() {
  estimate(
      "Draw an estimate of the motor's displacement behind the samples; Q: quality factor of all that is estimated, 1 "
      "to 1000, or motor: the one that its gains imply");
  add("--from", arguments_.from_ms, "Draw from this time in ms", time());
  add("--to", arguments_.to_ms, "Draw up to this time in ms; 0: to the end", time());
  picture_view();
}

void Options::output() {
  view();
  flag("--audible", arguments_.audible, "WAV at 48000 samples a second, for players that refuse less");
  add("--format", arguments_.format, "Form of OUTPUT -", one_of(design::file_forms("")))->default_str("");
  add_positional("OUTPUT", arguments_.outputs, "Files to write, in the form that their ending says, see below")
      ->check(output_in(design::file_forms(".")));
}

void Options::pattern_file() {
  add_positional("FILE", arguments_.files,
                 "Pattern, in any form that convert --help tells, or sound; - is standard input")
      ->expected(1)
      ->allow_extra_args(false)
      ->required();
}

void Options::converted_file() {
  add_positional("OUTPUT", arguments_.outputs, "The file to write, in the form that its ending says; or -")
      ->check([](const std::string& path) {
        if (path == kStandardOutput || design::format_of_path(path) != nullptr) return std::string();
        const Words endings = written_formats(&design::Format::ending);
        return design::echo(path) + " must end in " + design::listed(endings) + ", or be -";
      })
      ->expected(1)
      ->allow_extra_args(false)
      ->required();
  add("--format", arguments_.format, "Form of OUTPUT -", one_of(written_formats(&design::Format::name)))
      ->default_str("");
  flag("--strict", arguments_.strict, "Take what is lost for a fault");
}

void Options::sound() {
  flag("--taps", arguments_.taps_alone, "Of sound: make taps alone of it");
  flag("--curves", arguments_.curves_alone, "Of sound: make curves alone of it");
  add("--floor", arguments_.sound.floor_db, "Of sound: what is weaker is rest, in dB of full scale",
      number_in(design::kLeastFloorDb, design::kMostFloorDb));
  add("--gain", arguments_.sound.gain_db, "Of sound: how much stronger it is taken to be, in dB",
      number_in(design::kLeastGainDb, design::kMostGainDb));
}

void Options::sound_part() {
  add("--from", arguments_.sound.from_ms, "Of sound: begin at this time in ms", time());
  add("--to", arguments_.sound.to_ms, "Of sound: end at this time in ms; 0: at its end", time());
}

void Options::pattern_files() {
  add_positional(
      "FILES", arguments_.files,
      "Patterns, in any form that convert --help tells, none for a tap; last the .svg file to write, if any");
}

void Options::picture_file() {
  add_positional("PICTURE", arguments_.outputs, "The .svg file, or -")
      ->check(output_in({".svg"}))
      ->expected(1)
      ->allow_extra_args(false)
      ->required();
}

void Options::shell() {
  add_positional("SHELL", arguments_.shell, "bash, zsh or fish")
      ->required()
      ->transform(one_of({"bash", "zsh", "fish"}).description(""));
}

}  // namespace command
