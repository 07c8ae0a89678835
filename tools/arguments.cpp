// SPDX-License-Identifier: Apache-2.0
// What the commands take.
#include "arguments.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <limits>
#include <optional>

#include "design/base/text.h"
#include "design/picture/forms.h"

namespace command {
namespace {

using design::text;

// Decimal numbers in a range, and words like 832|1040. What is none of them is refused with what would be right.
CLI::Validator number_in(int32_t least, int32_t most) {
  const auto check = [=](std::string& word) -> std::string {
    const std::optional<int32_t> number = design::whole_number(word);
    if (!number || *number < least || *number > most) return design::range_fault(least, most, design::echo(word));
    word = std::to_string(*number);  // CLI11 takes 010 for 8
    return "";
  };
  return CLI::Validator(check, text("%d..%d", least, most));
}

std::string joined(const std::vector<std::string>& words) { return CLI::detail::join(words, "|"); }

CLI::Validator one_of(const std::string& words) {
  const auto check = [all = CLI::detail::split(words, '|')](const std::string& word) -> std::string {
    if (std::find(all.begin(), all.end(), word) != all.end()) return "";
    return "must be " + design::listed(all) + ", not " + design::echo(word);
  };
  return CLI::Validator(check, words);
}

CLI::Validator output_in(const std::string& endings) {
  const auto check = [all = CLI::detail::split(endings, '|')](const std::string& path) -> std::string {
    const bool fits = path == kStandardOutput || std::find(all.begin(), all.end(), ending_of(path)) != all.end();
    return fits ? "" : design::echo(path) + " must end in " + design::listed(all) + ", or be -";
  };
  return CLI::Validator(check, "");
}

bool takes(const Command& command, const std::string& option) {
  return (command.options + "--help ").find(option + ' ') != std::string::npos;
}

// Declares every option there is.
void add_options(CLI::App& app, const Command& command, Arguments& arguments) {
  const int most = takes(command, "FILES") ? CLI::detail::expected_max_vector_size : 1;
  const auto add = [&](const char* name, auto& value, const std::string& help, CLI::Validator kind) {
    CLI::Option* const option = app.add_option(name, value, help)->type_name(kind.get_description());
    option->transform(kind.description(""))->delimiter(',')->allow_extra_args(false)->capture_default_str();
    std::string shown = option->get_default_str();
    return option->default_str(CLI::detail::trim(shown, "[]"));
  };
  const auto add_list = [&](const char* name, auto& values, const std::string& help, const CLI::Validator& kind) {
    add(name, values, help, kind)->expected(1, most);
  };
  const CLI::Validator percent = number_in(0, 100);
  const CLI::Validator time = number_in(0, design::kLongestMs);
  const CLI::Validator chip = number_in(0, std::numeric_limits<int32_t>::max()).description("0|1|11|...");
  add("--frequency", arguments.frequency_hz, "In Hz, up to half the sample rate", number_in(1, 12000))
      ->required()
      ->default_str("");
  add("--half-periods", arguments.half_periods, "How many half waves", number_in(1, 1'000'000))
      ->required()
      ->default_str("");
  add("--amplitude", arguments.amplitude, "In sample units", number_in(0, 127))->required()->default_str("");
  add_list("--motor", arguments.motors, "Motor model", one_of(CLI::detail::join(design::kMotors, "|")));
  add_list("--chip", arguments.chips,
           "Chip type: 0 has 24000 samples a second, 1 has 12000, 11 plays events by itself; others act as 0", chip);
  add_list("--boost", arguments.boosts,
           "Boost of motor 832: on spans 200 to 300 Hz instead of 220 to 250 and is weaker, half as strong at offset 0",
           one_of("on|off"));
  add("--level", arguments.level, "Character of the tap: 0 is dull, 50 the motor's resonance, 100 crisp", percent);
  add("--levels", arguments.levels, "Levels, separated by commas", percent);
  add("--intensity", arguments.intensity, "Strength in percent of full scale", percent);
  app.add_flag("--in-pattern", arguments.in_pattern,
               "As weak as a pattern plays it: motor 1040 takes a level's share of the intensity there");
  add("--loop", arguments.playback.loops, "How often it plays", number_in(1, 65535));
  add("--interval", arguments.playback.interval_ms, "Silence between two passes in ms", time);
  add("--limit", arguments.playback.limit_ms,
      "Latest start of a vibration in ms; below the end of the pattern it can cut a last tap", time)
      ->default_str("");
  app.add_option("--save", arguments.save_path, "Write the checked pattern in canonical form to this file, or -")
      ->type_name("FILE")
      ->check([](const std::string& path) {
        return path.empty() || path.starts_with("--") ? "must be a file, or -, not " + design::echo(path) : "";
      });
  app.add_flag("--print-request", arguments.print_request, "Print the pattern as an array for a C host");
  add("--response", arguments.resonator.quality,
      "Draw an estimate of the motor's displacement behind the samples; Q: quality factor, 1 to 1000",
      number_in(1, 1000).description("[Q]"));
  add("--response-hz", arguments.resonator.hz, "Resonance of that estimate in Hz, up to 2000; 0: the motor's",
      number_in(0, 2000));
  add("--from", arguments.from_ms, "Draw from this time in ms", time);
  add("--to", arguments.to_ms, "Draw up to this time in ms; 0: to the end", time);
  app.add_flag("--strict", arguments.strict, "Take warnings for faults");
  app.add_flag("--audible", arguments.audible, "WAV at 48000 samples a second, for players that refuse less");
  add("--format", arguments.format, "Form of OUTPUT -", one_of(joined(design::file_forms(""))))->default_str("");
  app.add_option("--title", arguments.title, "Title of the picture")->type_name("TEXT");
  app.add_option("SHELL", arguments.shell, "bash, zsh or fish")->required()->transform(one_of("bash|zsh|fish"));
  app.add_option("FILES", arguments.files, "Pattern files, none for a tap; last the .svg file to write, if any");
  auto* const file = app.add_option("FILE", arguments.files, "Pattern in JSON; - is standard input");
  const char* const outputs = "Files to write, in the form that their ending says, see below";
  app.add_option("OUTPUT", arguments.outputs, outputs)->check(output_in(joined(design::file_forms("."))));
  auto* const picture = app.add_option("PICTURE", arguments.outputs, "The .svg file, or -")->check(output_in(".svg"));
  for (auto* const only : {file, picture}) only->expected(1)->allow_extra_args(false)->required();
  for (const char* positional : {"FILE", "FILES", "OUTPUT", "PICTURE", "SHELL"})
    app.get_option(positional)->type_name("");
}

}  // namespace

void refuse(const std::string& words) { throw Failure(kWrongInput, words); }

std::string ending_of(const std::string& path) {
  return CLI::detail::to_lower(std::filesystem::path(path).extension().string());
}

bool Arguments::has(const std::string& option) const {
  const CLI::Option* const found = command->get_option_no_throw(option);
  return found != nullptr && found->count() > 0;
}

void Arguments::refuse_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const {
  for (const char* option : options) {
    if (idle && has(option)) refuse(option + (": does nothing " + why));
  }
}

void Arguments::note_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const {
  for (const char* option : options) {
    if (idle && has(option)) std::cerr << "lrasynth: note: " << option << ": does nothing " << why << '\n';
  }
}

std::vector<lrasynth_profile> Arguments::profiles() const {
  std::vector<lrasynth_profile> profiles;
  for (const std::string& motor : motors) {
    for (const int32_t chip : chips) {
      for (const std::string& boost : boosts) {
        profiles.push_back(lrasynth_profile_of(chip, *design::whole_number(motor), boost == "on" ? 1 : 0));
        if (!design::has_boost(profiles.back().motor_type)) break;
      }
    }
  }
  for (const int32_t chip : chips) {
    if (!design::is_chip(chip)) std::cerr << text("lrasynth: note: --chip: type %d acts as 0\n", chip);
  }
  const auto none = [&](bool (*is)(int32_t motor)) {
    return std::none_of(profiles.begin(), profiles.end(), [&](const auto& profile) { return is(profile.motor_type); });
  };
  const std::string why = motors.size() > 1 ? "on these motors" : "on this motor";
  note_idle({"--boost"}, none(design::has_boost), why);
  note_idle({"--in-pattern"}, none(design::has_shares), why);
  return profiles;
}

void add_command(CLI::App& app, const Command& command, Arguments& arguments) {
  CLI::App& called = *app.add_subcommand(command.name, command.help)->footer(command.footer);
  add_options(called, command, arguments);
  for (CLI::Option* const option : called.get_options()) {
    option->disable_flag_override();
    if (!takes(command, option->get_name())) called.remove_option(option);
  }
  called.callback([&called, &arguments, run = command.run] {
    arguments.command = &called;
    run(arguments);
  });
}

}  // namespace command
