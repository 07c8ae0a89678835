// SPDX-License-Identifier: Apache-2.0
// What a command is given, and how it is refused.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "design/base/motor.h"
#include "design/formats/sound.h"
#include "design/pattern/file.h"
#include "design/waveform/response.h"
#include "files.h"

namespace command {

// The values of all options of all commands.
struct Arguments {
  const CLI::App* command = nullptr;  // the one that was called
  std::vector<std::string> files;
  std::vector<std::string> motors = {"1040"};
  std::vector<int32_t> chips = {0};
  std::vector<std::string> boosts = {"on"};
  int32_t level = 50;
  std::vector<int32_t> levels = {0, 25, 50, 75, 100};
  int32_t intensity = 80;
  bool in_pattern = false;
  int32_t frequency_hz = 0;
  int32_t half_periods = 0;
  int32_t amplitude = 0;
  design::Playback playback;
  design::SoundOptions sound;
  bool taps_alone = false;
  bool curves_alone = false;
  std::string save_path;
  bool flat = false;
  bool felt = false;
  bool print_request = false;
  design::Resonator resonator;
  int32_t from_ms = 0;
  int32_t to_ms = 0;
  bool strict = false;
  bool audible = false;
  std::string format;
  std::string title;
  std::vector<std::string> outputs;
  std::string shell;

  bool has(const std::string& option) const;

  // Ends the command over an option that is given and does nothing.
  void refuse_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const;
  // Only says so, where another motor or chip would heed it: one line serves for all of them.
  void note_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const;

  // Tells which options do nothing on these.
  void note_profiles(const std::vector<lrasynth_profile>& profiles) const;

  // What of a pattern's setup is asked for; of lists the first.
  design::Setup setup() const;

  // Every combination of motor, chip and boost. Says so where a chip is nothing of its own.
  std::vector<lrasynth_profile> profiles() const;
};

class Options;

struct Command {
  const char* name;
  const char* help;
  void (*declare)(Options& options);
  bool takes_lists;  // of motors, chips and boost settings
  std::string footer;
  void (*run)(const Arguments& arguments);
};

// All there are.
std::vector<Command> commands();

// What makes a shell complete the command's words: of bash, zsh or fish, from all that is declared.
std::string completion_for(const std::string& shell, const CLI::App& app);

// The ending of a file's name in small letters, like ".wav", or ".felt.csv" where both are a form's.
std::string ending_of(const std::string& path);

// Ends the command over wrong input.
[[noreturn]] void refuse(const std::string& words);

}  // namespace command
