// SPDX-License-Identifier: Apache-2.0
// Files that appear whole or not at all.
#include "output.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace command {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, int error) {
  throw Failure(kCannotRender, "cannot write " + path + ": " + std::strerror(error));
}

// Files under temporary names beside their own, removed unless they are published.
class PendingFiles {
 public:
  PendingFiles() = default;
  PendingFiles(const PendingFiles&) = delete;
  PendingFiles& operator=(const PendingFiles&) = delete;
  ~PendingFiles() {
    for (const Pending& file : files_) ::unlink(file.temporary.c_str());
  }

  void write(const File& file) {
    // The one ordinary reason why publishing could fail half way.
    if (fs::is_directory(file.path)) fail(file.path, EISDIR);
    files_.push_back({file.path, file.path + '.' + std::to_string(::getpid()) + '.' + std::to_string(files_.size())});
    std::ofstream stream(files_.back().temporary, std::ios::binary);
    stream << file.content;
    stream.close();
    if (!stream) fail(file.path, errno);
  }

  void publish() {
    for (const Pending& file : files_) {
      std::error_code error;
      fs::rename(file.temporary, file.path, error);
      if (error) fail(file.path, error.value());
    }
    files_.clear();
  }

 private:
  struct Pending {
    std::string path;
    std::string temporary;
  };
  std::vector<Pending> files_;
};

}  // namespace

void write_files(const std::vector<File>& files) {
  PendingFiles pending;
  std::string report;
  std::string standard_output;
  for (const File& file : files) {
    if (file.path == kStandardOutput) {
      standard_output += file.content;
    } else {
      pending.write(file);
      report += file.path + ": " + file.note + '\n';
    }
  }
  pending.publish();
  std::cout << (standard_output.empty() ? report : standard_output);
  if (!std::cout.flush()) fail("standard output", errno);
}

}  // namespace command
