// SPDX-License-Identifier: Apache-2.0
// What the commands take, in groups that each command picks from.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "arguments.h"

namespace command {

// What the value of --response says where it is left out.
inline const std::string kMotorsOwn = "motor";

// Declares options of one command, which store into its arguments.
class Options {
 public:
  // With lists, motors, chips and boost settings may be several.
  Options(CLI::App& app, Arguments& arguments, bool lists = false) : app_(app), arguments_(arguments), lists_(lists) {}

  void motor();
  void chip();
  void boost();
  void tap();
  void levels();
  void in_pattern();
  void intensity();
  void tone();
  void passes();
  void saving();
  void view();
  void estimate(const char* response);
  void picture_view();
  void output();
  void pattern_file();
  void pattern_files();
  void converted_file();
  void felt();
  void sound();
  void sound_part();
  void picture_file();
  void shell();

 private:
  template <class Value>
  CLI::Option* add(const char* name, Value& value, const std::string& help, CLI::Validator kind);
  template <class Value>
  void add_list(const char* name, Value& values, const std::string& help, const CLI::Validator& kind);
  template <class Value>
  CLI::Option* add_positional(const char* name, Value& value, const char* help);
  void flag(const char* name, bool& value, const char* help);

  CLI::App& app_;
  Arguments& arguments_;
  bool lists_;
};

}  // namespace command
