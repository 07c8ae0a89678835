// SPDX-License-Identifier: Apache-2.0
// What the commands' arguments have in common.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "design/piece.h"
#include "design/response.h"
#include "files.h"

namespace command {

// Each adds its command.
void add_tap(CLI::App& app);
void add_pattern(CLI::App& app);
void add_tone(CLI::App& app);
void add_sheet(CLI::App& app);
void add_compare(CLI::App& app);

// On the forms of OUTPUT, for the end of --help.
extern const char* const kOutputHelp;

// Decimal numbers in a range, and words like 832|1040. What is none of them is refused with what would be right.
CLI::Validator number_in(int32_t least, int32_t most);
CLI::Validator one_of(const std::string& words);
CLI::Validator chip_number();
std::string motor_words();

// An OUTPUT that ends in one of these, or is standard output.
CLI::Validator output_in(const std::string& endings);
std::string ending_of(const std::string& path);

// Adds names of files.
template <class Value>
CLI::Option* add_files(CLI::App& command, const std::string& name, Value& value, const std::string& help) {
  return command.add_option(name, value, help)->type_name("");
}

// Adds an option for a value of a kind, or for a list of them.
template <class Value>
CLI::Option* add(CLI::App& command, const std::string& name, Value& value, const std::string& help,
                 CLI::Validator kind) {
  CLI::Option* const option = command.add_option(name, value, help)->type_name(kind.get_description());
  return option->transform(kind.description(""))->delimiter(',')->allow_extra_args(false)->capture_default_str();
}

// Ends the command over an option that is given and does nothing.
void refuse_idle(const CLI::App& command, std::initializer_list<const char*> options, bool idle, const char* why);

// Ends it over a waveform longer than design::kLongestMs.
void check_length(const std::string& options, double length_ms);

// The device profile.
struct Device {
  std::string motor = "1040";
  int32_t chip = 0;
  std::string boost = "on";

  void add(CLI::App& command, bool with_motor, bool with_boost);
  lrasynth_profile profile(const CLI::App& command) const;
};

// Says so where the chip is nothing of its own.
lrasynth_profile profile_of(const std::string& motor, int32_t chip, const std::string& boost);

struct Tap {
  int32_t level = 50;
  int32_t intensity = 80;
  bool in_pattern = false;

  void add(CLI::App& command, bool with_level);
};

design::Piece tap_piece(const lrasynth_profile& profile, const Tap& tap);

// The events of a file that have no fault on that chip and motor; otherwise the command ends with all faults.
std::vector<design::Event> read_events(const std::string& path, const lrasynth_profile& profile,
                                       const design::Playback& playback);

// How a waveform is looked at: the motor's response, the stretch of time that is drawn, and what warnings mean.
struct View {
  int32_t quality = 20;
  int32_t response_hz = 0;
  int32_t from_ms = 0;
  int32_t to_ms = 0;
  bool strict = false;

  void add(CLI::App& command);
  design::Resonator resonator() const { return {static_cast<double>(response_hz), static_cast<double>(quality)}; }
  design::Span shown(design::Span whole) const;

  // Prints the warnings of a piece, and ends the command where they are faults.
  void report(const design::Piece& piece, const std::string& prefix = "") const;
};

// OUTPUT... and what belongs to it.
struct Outputs {
  std::vector<std::string> paths;
  std::string format;
  bool audible = false;
  View view;

  void add(CLI::App& command);

  // Warns, then prints a summary where no OUTPUT is named, or writes every OUTPUT in the form that its ending says, and
  // the other files with them.
  void finish(const CLI::App& command, const design::Piece& piece, std::vector<File> others = {},
              const std::vector<std::string>& inputs = {}) const;

 private:
  std::string form(const std::string& path) const;
  void refuse_idle_options(const CLI::App& command, bool tells) const;
  File file(const CLI::App& command, const design::Piece& piece, const std::string& path) const;
};

}  // namespace command
