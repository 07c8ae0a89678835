// What the commands' arguments have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "output.h"
#include "waveform.h"

namespace lrasynth {

// Each adds its command.
void add_tap(CLI::App& app);

CLI::Option* add_integer(CLI::App& command, const std::string& name, int32_t& value, const std::string& help,
                         int32_t least, int32_t most);

// The device profile as a command's arguments say it.
struct Profile {
  int32_t motor = 1040;
  int32_t chip = 0;
  bool boost = true;

  void add_motor(CLI::App& command);
  void add_chip(CLI::App& command);
  void add_boost(CLI::App& command);
  void apply() const;
};

// OUTPUT... and what belongs to it.
struct Outputs {
  std::vector<std::string> paths;
  std::string standard_output_form;

  CLI::Option* add(CLI::App& command);
  void write(const Waveform& waveform) const;
};

}  // namespace lrasynth
