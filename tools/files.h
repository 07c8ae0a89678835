// SPDX-License-Identifier: Apache-2.0
// Files: whole ones to read, and some to write that appear whole or not at all.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "design/waveform/waveform.h"

namespace command {

// Exit statuses beside 0.
constexpr int kCannotRender = 1;
constexpr int kWrongInput = 2;

// Why a command ends early: what to print, one line per fault, and its exit status.
struct Failure : std::runtime_error {
  Failure(int exit_status, const std::string& lines) : std::runtime_error(lines), status(exit_status) {}
  int status;
};

inline const std::string kStandardOutput = "-";

// A name for messages and titles.
std::string shown_path(const std::string& path);

// An open file to read; - is standard input.
using Input = std::shared_ptr<std::FILE>;
Input opened(const std::string& path);

// At most that many of its next bytes.
std::string bytes_of(const Input& input, const std::string& path, size_t most);

[[noreturn]] void fail_to_read(const std::string& path);

// Where a file's bytes go while it is written. What goes wrong is kept, and nothing is written after it: exceptions do
// not pass through design/.
struct Target {
  int descriptor;
  int error = 0;  // as errno tells it; EINTR: the command is to end

  // Whether nothing has gone wrong.
  bool write(std::string_view bytes);
};

struct File {
  std::string path;
  std::function<void(Target& target)> write;
  std::string note = {};  // what to say about it
};

File text_file(std::string path, std::string content, std::string note = {});

// Writes into pipes and devices, then all files or none, then to standard output, where it says what it wrote unless
// that carries one. Refused are a file named twice, and the input.
void write_files(std::vector<File> files, const std::vector<std::string>& inputs = {});

// Audio at 48000 samples a second, mono, 16 bits.
void write_audible_wav(const design::Waveform& waveform, Target& target);
std::string audible_size_of(const design::Waveform& waveform);

}  // namespace command
