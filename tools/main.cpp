// SPDX-License-Identifier: Apache-2.0
// lrasynth: renders haptic waveforms into files, and tells what they will be.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "arguments.h"
#include "design/base/text.h"
#include "options.h"

namespace command {
namespace {

int complain(const std::string& lines, int status) {
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) {
    std::cerr << "lrasynth: " << design::shown(line, 400) << '\n';
  }
  return status;
}

// The value of --response may be left out, which CLI11 has for the last option only.
std::vector<std::string> typed_words(int argc, const char* const* argv) {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) {
    const std::string next = i + 1 < argc ? argv[i + 1] : "";
    char* end = nullptr;
    std::strtod(next.c_str(), &end);
    const bool is_quality = next == kMotorsOwn || (!next.empty() && *end == '\0');
    words.emplace_back(argv[i]);
    if (words.back() == "--response" && !is_quality) words.back() += "=" + kMotorsOwn;
  }
  return words;
}

std::vector<std::string> option_names(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : app.get_options()) {
    if (!option->get_positional()) names.push_back(option->get_name());
  }
  return names;
}

// Of a word before any command, which may be an option of some.
std::string refusal_of_word(const CLI::App& app, const std::string& word) {
  std::vector<std::string> commands;
  std::vector<std::string> owners;
  for (const CLI::App* const command : app.get_subcommands(nullptr)) {
    commands.push_back(command->get_name());
    const std::vector<std::string> options = option_names(*command);
    if (std::find(options.begin(), options.end(), word) != options.end()) owners.push_back(command->get_name());
  }
  if (word.starts_with('-') && owners.empty()) {
    return design::shown(word) + ": is no option" + design::did_you_mean(word, option_names(app));
  }
  if (!owners.empty()) return word + ": stands behind its command: " + design::listed(owners);
  return design::shown(word) + ": is no command; there are " + design::listed(commands, "and") +
         design::did_you_mean(word, commands);
}

// Of a word that is left over where a command was called. CLI11 takes options before the command for the command's.
std::string refusal_of_extra(const CLI::App& command, const std::string& extra, const std::vector<std::string>& words) {
  if (!extra.starts_with('-')) return design::shown(extra) + ": is an argument too many";
  const std::string name = extra.substr(0, extra.find('='));
  const auto at = std::find(words.begin(), words.end(), extra);
  const bool stands_before = at < std::find(words.begin(), words.end(), command.get_name());
  const std::vector<std::string> owned = option_names(command);
  if (stands_before && std::find(owned.begin(), owned.end(), name) != owned.end()) {
    return name + ": stands behind its command: lrasynth " + command.get_name() + " " + name;
  }
  return design::shown(extra) + ": is no option of this command" + design::did_you_mean(name, owned);
}

// Of an option with too few or too many values; which it is, CLI11 says in its text alone.
std::string refusal_of_values(const CLI::App& command, const std::vector<std::string>& words) {
  for (const CLI::Option* const option : command.get_options()) {
    const int most = option->get_items_expected_max();
    if (most > 0 && std::ssize(option->results()) > most) return option->get_name() + ": takes one value";
  }
  std::string last;
  for (size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    const CLI::Option* const option = command.get_option_no_throw(word.substr(0, word.find('=')));
    if (option == nullptr || option->get_positional()) continue;
    last = option->get_name();
    const bool has_value = word.find('=') < word.size() - 1;
    if (has_value && option->get_disable_flag_override()) return last + ": takes no value";
    if (!has_value && option->get_items_expected_max() > 0) ++i;  // the next word is its value, however it looks
  }
  return last + ": takes one value";  // which is missing
}

// In our words, what CLI11 says otherwise.
std::string refusal_of(const CLI::App& app, const CLI::ParseError& error, const std::vector<std::string>& words) {
  std::vector<std::string> extras = app.remaining(true);
  std::erase(extras, "--");
  if (app.get_subcommands().empty()) {
    std::vector<std::string> names;
    for (const Command& command : commands()) names.emplace_back(command.name);
    return extras.empty() ? "a command is required: " + design::listed(names) : refusal_of_word(app, extras.front());
  }
  if (!extras.empty()) return refusal_of_extra(*app.get_subcommands().front(), extras.front(), words);
  const bool is_about_values = dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr;
  return is_about_values ? refusal_of_values(*app.get_subcommands().front(), words) : error.what();
}

void add_command(CLI::App& app, const Command& command, Arguments& arguments) {
  CLI::App& called = *app.add_subcommand(command.name, command.help)->footer(command.footer);
  Options options(called, arguments, command.takes_lists);
  command.declare(options);
  called.callback([&called, &arguments, run = command.run] {
    arguments.command = &called;
    run(arguments);
  });
}

int run(int argc, const char* const* argv) {
  CLI::App app("Renders haptic waveforms for linear resonant actuators into files, and tells what they will be.",
               "lrasynth");
  app.set_version_flag("--version", design::text("lrasynth %d.%d.%d", LRASYNTH_VERSION_MAJOR, LRASYNTH_VERSION_MINOR,
                                                 LRASYNTH_VERSION_PATCH));
  app.footer(
      "Examples:\n  lrasynth tap --motor 1040 --level 50 tap.svg tap.wav\n  lrasynth pattern heartbeat.json\n\n"
      "Exit status: 0, 1 if something cannot be read, rendered or written, 2 for wrong input.");
  app.require_subcommand(1);
  Arguments arguments;
  for (const Command& command : commands()) add_command(app, command, arguments);
  const std::vector<std::string> words = typed_words(argc, argv);
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));  // as CLI11 takes them
    return 0;
  } catch (const CLI::ParseError& error) {
    // Also how --help and --version end.
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return std::cout.flush() ? 0 : complain("cannot write standard output", kCannotRender);
    }
    return complain(refusal_of(app, error, words), kWrongInput);
  }
}

}  // namespace
}  // namespace command

int main(int argc, char** argv) {
  std::signal(SIGXFSZ, SIG_IGN);  // an error of writing, as any other
  try {
    return command::run(argc, argv);
  } catch (const command::Failure& failure) {
    return command::complain(failure.what(), failure.status);
  } catch (const std::exception& error) {
    return command::complain(error.what(), command::kCannotRender);
  }
}
