// SPDX-License-Identifier: Apache-2.0
// lrasynth: renders haptic waveforms into files, and tells what they will be.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "arguments.h"
#include "design/text.h"

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
std::vector<std::string> words_of(int argc, const char* const* argv) {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) {
    const std::string next = i + 1 < argc ? argv[i + 1] : "";
    double number = 0;
    words.emplace_back(argv[i]);
    if (words.back() == "--response" && !CLI::detail::lexical_cast(next, number)) words.back() += "=20";
  }
  std::reverse(words.begin(), words.end());  // as CLI11 takes them
  return words;
}

// In our words, what CLI11 says otherwise.
std::string words_of(const CLI::App& app, const CLI::ParseError& error) {
  std::vector<std::string> extras = app.remaining(true);
  std::erase(extras, "--");
  const std::string extra = extras.empty() ? "" : design::shown(extras.front());
  if (app.get_subcommands().empty()) {
    std::vector<std::string> names;
    for (const Command& command : commands()) names.emplace_back(command.name);
    const std::string all = design::alternatives(names);
    return extra.empty() ? "a command is required: " + all : extra + ": is no command; there are " + all;
  }
  if (extra.starts_with('-')) return extra + ": is no option of this command";
  if (!extra.empty()) return extra + ": is an argument too many";
  const std::string words = error.what();
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return words;
  const size_t flag = words.find(" was given a disallowed flag override");
  return flag != words.npos ? "--" + words.substr(0, flag) + ": takes no value"
                            : words.substr(0, words.find(':')) + ": takes one value";
}

int run(int argc, const char* const* argv) {
  CLI::App app("Renders haptic waveforms for linear resonant actuators into files, and tells what they will be.",
               "lrasynth");
  app.set_version_flag("--version", design::text("lrasynth %d.%d.%d", LRASYNTH_VERSION_MAJOR, LRASYNTH_VERSION_MINOR,
                                                 LRASYNTH_VERSION_PATCH));
  app.footer("Exit status: 0, 1 if something cannot be read, rendered or written, 2 for wrong input.");
  app.require_subcommand(1);
  Arguments arguments;
  for (const Command& command : commands()) add_command(app, command, arguments);
  try {
    app.parse(words_of(argc, argv));
    return 0;
  } catch (const CLI::ParseError& error) {
    // Also how --help and --version end.
    if (error.get_exit_code() == 0) {
      app.exit(error);
      return std::cout.flush() ? 0 : complain("cannot write standard output", kCannotRender);
    }
    return complain(words_of(app, error), kWrongInput);
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
