// SPDX-License-Identifier: Apache-2.0
// Files that appear whole or not at all.
#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include "design/text.h"

namespace command {
namespace {

namespace fs = std::filesystem;

constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGTERM};

// Keeps signals waiting while there are files to be removed first.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : kEndingSignals) ::sigaddset(&held, signal);
    ::sigprocmask(SIG_BLOCK, &held, &before_);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

// What a name stands for, also where a link leads to a file that does not exist yet.
fs::path resolved(fs::path path) {
  std::error_code error;
  for (int links = 0; links < 40 && fs::is_symlink(path, error); ++links) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  return path;
}

// The same for all names of a file.
std::string identity(const std::string& path) {
  struct stat found;
  if (path == kStandardOutput) return path;
  if (::stat(path.c_str(), &found) == 0)
    return design::text("%ju:%ju", uintmax_t{found.st_dev}, uintmax_t{found.st_ino});
  std::error_code error;
  const fs::path name = fs::weakly_canonical(fs::absolute(resolved(path)), error);
  return error ? path : name.string();  // opening it will fail
}

void refuse_clashes(const std::vector<File>& files, const std::vector<std::string>& inputs) {
  std::set<std::string> taken;
  for (const std::string& input : inputs) {
    if (input != kStandardOutput) taken.insert(identity(input));
  }
  for (const File& file : files) {
    if (taken.insert(identity(file.path)).second) continue;
    const bool printed = file.path == kStandardOutput;
    throw Failure(kWrongInput, shown_path(file.path) + (printed ? ": takes one thing only" : ": is named twice"));
  }
}

// Opens a file under its name, or under a temporary one beside it, which is gone in the end unless it was published.
class OpenFile {
 public:
  OpenFile(const File& file, const std::string& temporary_name) : file_(file), path_(resolved(file.path)) {
    struct stat found;
    const bool exists = ::stat(path_.c_str(), &found) == 0;
    if (exists && S_ISDIR(found.st_mode)) fail(EISDIR);
    // A superuser could write what is marked as read-only.
    if (exists && ((found.st_mode & 0222) == 0 || ::access(path_.c_str(), W_OK) != 0)) fail(EACCES);
    // Pipes and devices take bytes as they come.
    through_ = exists && !S_ISREG(found.st_mode);
    if (through_) return;
    temporary_ = path_.parent_path() / temporary_name;
    descriptor_ = ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0) fail(errno);
    if (exists) ::fchmod(descriptor_, found.st_mode & 07777);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    if (!through_) ::unlink(temporary_.c_str());
  }

  bool goes_through() const { return through_; }
  void write() {
    if (through_) descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) fail(errno);
    file_.write({descriptor_, file_.path});
  }
  void publish() const {
    if (!through_ && ::rename(temporary_.c_str(), path_.c_str()) != 0) fail(errno);
  }

 private:
  [[noreturn]] void fail(int error) const { Target{-1, file_.path}.fail(error); }

  const File& file_;
  fs::path path_;
  fs::path temporary_;
  bool through_ = false;
  int descriptor_ = -1;
};

}  // namespace

std::string shown_path(const std::string& path) {
  constexpr size_t kMostCharacters = 120;
  return design::shown(path, kMostCharacters);
}

std::string content_of(const std::string& path, size_t most) {
  const bool is_file = path != kStandardOutput;
  std::FILE* const file = is_file ? std::fopen(path.c_str(), "rb") : stdin;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(is_file ? file : nullptr, std::fclose);
  std::string content(most, '\0');
  if (file != nullptr) content.resize(std::fread(content.data(), 1, content.size(), file));
  if (file != nullptr && std::ferror(file) == 0) return content;
  throw Failure(kCannotRender, "cannot read " + shown_path(path) + ": " + std::strerror(errno));
}

void Target::fail(int error) const {
  throw Failure(kCannotRender, "cannot write " + shown_path(path) + ": " + std::strerror(error));
}

void Target::stop_if_signalled() const {
  sigset_t waiting;
  ::sigpending(&waiting);
  for (const int signal : kEndingSignals) {
    if (::sigismember(&waiting, signal) == 1) fail(EINTR);
  }
}

void Target::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    stop_if_signalled();
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) fail(errno);
    if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
  }
}

File text_file(std::string path, std::string content, std::string note) {
  const auto write = [content = std::move(content)](const Target& target) { target.write(content); };
  return {std::move(path), write, std::move(note)};
}

void write_files(const std::vector<File>& files, const std::vector<std::string>& inputs) {
  refuse_clashes(files, inputs);
  const Target output = {STDOUT_FILENO, "standard output"};
  auto held = std::make_unique<HeldSignals>();  // before the files, which must be gone first
  std::vector<std::unique_ptr<OpenFile>> open;
  std::vector<OpenFile*> through;
  const File* printed = nullptr;
  std::string report;
  for (const File& file : files) {
    if (file.path == kStandardOutput) {
      printed = &file;
      continue;
    }
    report += shown_path(file.path) + ": " + file.note + '\n';
    open.push_back(std::make_unique<OpenFile>(file, design::text(".lrasynth-%d-%zu", ::getpid(), open.size())));
    open.back()->goes_through() ? through.push_back(open.back().get()) : open.back()->write();
  }
  for (const auto& file : open) file->publish();
  // What waits for a reader may be interrupted.
  held.reset();
  for (OpenFile* file : through) file->write();
  printed != nullptr ? printed->write(output) : output.write(report);
}

}  // namespace command
