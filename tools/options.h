// SPDX-License-Identifier: Apache-2.0
// What the commands' arguments have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "output.h"
#include "waveform.h"

namespace command {

// Each adds its command.
void add_tap(CLI::App& app);
void add_pattern(CLI::App& app);
void add_tone(CLI::App& app);
void add_sheet(CLI::App& app);

// On the forms of OUTPUT, for the end of --help.
extern const char* const kOutputHelp;

// A check that leaves its set of values out of --help, where the argument's type shows it.
template <class Check>
Check quiet(Check check) {
  check.description("");
  return check;
}

// An argument that refuses what is outside its range, naming itself and the range.
CLI::Option* add_integer(CLI::App& command, const std::string& name, int32_t& value, const std::string& help,
                         int32_t least, int32_t most);

// The device profile as a command's arguments say it.
struct Profile {
  int32_t motor = 1040;
  int32_t chip = 0;
  std::string boost = "on";

  void add_motor(CLI::App& command);
  void add_chip(CLI::App& command);
  void add_boost(CLI::App& command);
  void apply() const;
};

// OUTPUT... and what belongs to it.
struct Outputs {
  std::vector<std::string> paths;
  std::string standard_output_form;
  bool audible = false;

  CLI::Option* add(CLI::App& command);

  // Every OUTPUT in the form that its ending says.
  std::vector<File> files(const Waveform& waveform) const;

  // What an OUTPUT's ending or --format says, like ".wav".
  std::string form(const std::string& path) const;
};

// Refuses a waveform longer than kLongestMs, which 0 samples stand for if they do not fit an integer; `options` are
// those that made it so.
void check_length(const std::string& options, int32_t samples);

}  // namespace command
