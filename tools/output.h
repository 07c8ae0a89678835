// SPDX-License-Identifier: Apache-2.0
// From rendered waveforms to files: the forms by name, and files that appear whole or not at all.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "waveform.h"

namespace command {

// Exit statuses beside 0.
constexpr int kCannotRender = 1;
constexpr int kWrongInput = 2;

// Why a command ends early: what to print, one line per fault, and its exit status.
struct Failure : std::runtime_error {
  Failure(int exit_status, const std::string& lines) : std::runtime_error(lines), status(exit_status) {}
  int status;
};

struct File {
  std::string path;
  std::string content;
  std::string note;  // what to say about it
};

inline const std::string kStandardOutput = "-";

// Writes all files or none, then what goes to standard output. Says what it wrote on standard output, unless that
// carries a file.
void write_files(const std::vector<File>& files);

// The output forms beside the bytes themselves.
std::string to_csv(const Waveform& waveform);
std::string to_svg(const Waveform& waveform);
std::string to_wav(const Waveform& waveform);
std::string to_audible_wav(const Waveform& waveform);

}  // namespace command
