// SPDX-License-Identifier: Apache-2.0
// lrasynth: renders haptic waveforms into files.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include "options.h"
#include "text.h"

namespace command {
namespace {

int complain(const std::string& lines, int status) {
  std::istringstream stream(lines);
  for (std::string line; std::getline(stream, line);) std::cerr << "lrasynth: " << line << '\n';
  return status;
}

int run(int argc, const char* const* argv) {
  CLI::App app("Renders haptic waveforms for linear resonant actuators into files.", "lrasynth");
  app.set_version_flag(
      "--version", text("lrasynth %d.%d.%d", LRASYNTH_VERSION_MAJOR, LRASYNTH_VERSION_MINOR, LRASYNTH_VERSION_PATCH));
  app.footer("Exit status: 0, 1 if it cannot be rendered or written, 2 for wrong input.");
  app.require_subcommand(1);
  add_tap(app);
  add_pattern(app);
  add_tone(app);
  add_sheet(app);
  try {
    app.parse(argc, argv);
    return 0;
  } catch (const CLI::ParseError& error) {
    // Also how --help and --version end.
    if (error.get_exit_code() == 0) return app.exit(error);
    const bool commanded = !app.get_subcommands().empty();
    return complain(commanded ? error.what() : "a command is required: tap, pattern, tone or sheet", kWrongInput);
  }
}

}  // namespace
}  // namespace command

int main(int argc, char** argv) {
  try {
    return command::run(argc, argv);
  } catch (const command::Failure& failure) {
    return command::complain(failure.what(), failure.status);
  } catch (const std::exception& error) {
    return command::complain(error.what(), command::kCannotRender);
  }
}
