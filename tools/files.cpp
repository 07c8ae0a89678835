// SPDX-License-Identifier: Apache-2.0
// Files that appear whole or not at all.
#include "files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include "design/base/text.h"

namespace command {
namespace {

namespace fs = std::filesystem;
using design::text;

constexpr int kEndingSignals[] = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM,   SIGPIPE, SIGALRM, SIGXCPU,
                                  SIGUSR1, SIGUSR2, SIGPROF, SIGVTALRM, SIGIO,   SIGPWR,  SIGSTKFLT};

// Keeps signals waiting while there are files to be removed first.
class HeldSignals {
 public:
  HeldSignals() {
    sigset_t held;
    ::sigemptyset(&held);
    for (const int signal : kEndingSignals) {
      struct sigaction action;  // what is ignored would wait all the same
      if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) ::sigaddset(&held, signal);
    }
    ::sigprocmask(SIG_BLOCK, &held, &before_);
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;
  ~HeldSignals() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

bool is_signal_waiting() {
  sigset_t waiting;
  ::sigpending(&waiting);
  return std::any_of(std::begin(kEndingSignals), std::end(kEndingSignals),
                     [&](int signal) { return ::sigismember(&waiting, signal) == 1; });
}

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
  if (::stat(path.c_str(), &found) == 0) return text("%ju:%ju", uintmax_t{found.st_dev}, uintmax_t{found.st_ino});
  std::error_code error;
  const fs::path name = fs::weakly_canonical(fs::absolute(resolved(path), error), error);
  return error ? path : name.string();  // opening it will fail
}

void refuse_clashes(const std::vector<File>& files, const std::vector<std::string>& inputs) {
  std::set<std::string> taken;
  for (const std::string& input : inputs) {
    taken.insert(identity(input == kStandardOutput ? "/dev/stdin" : input));
  }
  for (const File& file : files) {
    if (taken.insert(identity(file.path)).second) continue;
    const bool printed = file.path == kStandardOutput;
    throw Failure(kWrongInput, shown_path(file.path) + (printed ? ": takes one thing only" : ": is named twice"));
  }
}

[[noreturn]] void fail(const std::string& path, int error) {
  throw Failure(kCannotRender, "cannot write " + shown_path(path) + ": " + std::strerror(error));
}

// Pipes and devices take bytes as they come.
bool goes_through(const std::string& path) {
  struct stat found;
  return ::stat(path.c_str(), &found) == 0 && !S_ISREG(found.st_mode) && !S_ISDIR(found.st_mode);
}

void write_into(int descriptor, const File& file, const std::string& name) {
  Target target = {descriptor};
  file.write(target);
  if (target.error != 0) fail(name, target.error);
}

void write_through(const File& file) {
  const int descriptor = ::open(file.path.c_str(), O_WRONLY | O_CLOEXEC);
  if (descriptor < 0) fail(file.path, errno);
  write_into(descriptor, file, file.path);
  ::close(descriptor);
}

// A file under a temporary name beside its own, which is gone in the end unless it was published.
class PendingFile {
 public:
  PendingFile(const File& file, const std::string& temporary_name) : file_(file), path_(resolved(file.path)) {
    struct stat found;
    const bool exists = ::stat(path_.c_str(), &found) == 0;
    if (!exists && errno != ENOENT) fail(file_.path, errno);
    if (exists && S_ISDIR(found.st_mode)) fail(file_.path, EISDIR);
    // A superuser could write what is marked as read-only.
    if (exists && ((found.st_mode & 0222) == 0 || ::access(path_.c_str(), W_OK) != 0)) fail(file_.path, EACCES);
    temporary_ = path_.parent_path() / temporary_name;
    descriptor_ = ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ < 0) fail(file_.path, errno);
    // Another owner is kept where that is allowed.
    const bool owned = exists && ::fchown(descriptor_, found.st_uid, found.st_gid) == 0;
    if (exists) ::fchmod(descriptor_, found.st_mode & (owned ? 07777 : 0777));
  }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  ~PendingFile() {
    ::close(descriptor_);
    ::unlink(temporary_.c_str());
  }

  void write() const { write_into(descriptor_, file_, file_.path); }

  void publish() const {
    if (::rename(temporary_.c_str(), path_.c_str()) != 0) fail(file_.path, errno);
  }

 private:
  const File& file_;
  fs::path path_;
  fs::path temporary_;
  int descriptor_ = -1;
};

}  // namespace

std::string shown_path(const std::string& path) {
  constexpr size_t kMostCharacters = 120;
  return path.empty() ? design::echo(path) : design::shown(path, kMostCharacters);
}

void fail_to_read(const std::string& path) {
  throw Failure(kCannotRender, "cannot read " + shown_path(path) + ": " + std::strerror(errno));
}

Input opened(const std::string& path) {
  if (path == kStandardOutput) return {stdin, [](std::FILE*) {}};
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) fail_to_read(path);
  return {file, std::fclose};
}

std::string bytes_of(const Input& input, const std::string& path, size_t most) {
  std::string bytes(most, '\0');
  bytes.resize(std::fread(bytes.data(), 1, bytes.size(), input.get()));
  if (std::ferror(input.get()) != 0) fail_to_read(path);
  return bytes;
}

bool Target::write(std::string_view bytes) {
  while (error == 0 && !bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (is_signal_waiting() || (written < 0 && errno != EINTR)) error = written < 0 ? errno : EINTR;
    if (written > 0) bytes.remove_prefix(static_cast<size_t>(written));
  }
  return error == 0;
}

File text_file(std::string path, std::string content, std::string note) {
  const auto write = [content = std::move(content)](Target& target) { target.write(content); };
  return {std::move(path), write, std::move(note)};
}

void write_files(std::vector<File> files, const std::vector<std::string>& inputs) {
  for (File& file : files) {
    if (goes_through(file.path) && identity(file.path) == identity("/dev/stdout")) file.path = kStandardOutput;
  }
  refuse_clashes(files, inputs);
  const File* printed = nullptr;
  std::vector<const File*> whole;
  std::string report;
  for (const File& file : files) {
    if (file.path == kStandardOutput) {
      printed = &file;
      continue;
    }
    // What waits for a reader comes before signals are held, and before there are files to be removed.
    goes_through(file.path) ? write_through(file) : whole.push_back(&file);
    report += shown_path(file.path) + ": " + file.note + '\n';
  }
  {
    const HeldSignals held;
    std::vector<std::unique_ptr<PendingFile>> pending;
    for (const File* file : whole) {
      pending.push_back(std::make_unique<PendingFile>(*file, text(".lrasynth-%d-%zu", ::getpid(), pending.size())));
      pending.back()->write();
    }
    for (const auto& file : pending) file->publish();
  }
  write_into(STDOUT_FILENO, printed != nullptr ? *printed : text_file({}, report), "standard output");
}

}  // namespace command
