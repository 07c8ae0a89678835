// SPDX-License-Identifier: Apache-2.0
// Sound from files and pipes, block by block.
#include "sound.h"

#include <sndfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <vector>

#include "files.h"

namespace command {
namespace {

void bound(size_t size, const std::string& path) {
  if (size > kLargestSound) throw Failure(kWrongInput, shown_path(path) + ": is larger than 256 MiB");
}

// Whether a file can be read from its start, behind which there are bytes that have been read.
bool starts_anew(const Input& input, size_t taken, const std::string& path) {
  struct stat found;
  if (::fstat(::fileno(input.get()), &found) != 0) fail_to_read(path);
  if (!S_ISREG(found.st_mode) || ::ftello(input.get()) != static_cast<off_t>(taken)) return false;
  bound(static_cast<size_t>(found.st_size), path);
  return true;
}

// All of what comes through a pipe, in a file that is gone when it is closed.
Input spooled(const Input& input, std::string_view first_bytes, const std::string& path) {
  Input whole(std::tmpfile(), [](std::FILE* file) { return file == nullptr ? 0 : std::fclose(file); });
  const auto write = [&](std::string_view bytes) {
    if (whole == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), whole.get()) < bytes.size()) {
      throw Failure(kCannotRender, "cannot keep " + shown_path(path) + " for reading: " + std::strerror(errno));
    }
  };
  write(first_bytes);
  std::vector<char> block(65536);
  for (size_t size = first_bytes.size(), count = 1; count > 0; size += count) {
    bound(size, path);
    count = std::fread(block.data(), 1, block.size(), input.get());
    write({block.data(), count});
  }
  if (std::ferror(input.get()) != 0) fail_to_read(path);
  if (std::fflush(whole.get()) != 0) write("");
  return whole;
}

// The means of channels.
void mix(const std::vector<float>& samples, size_t channels, std::vector<float>& mixed) {
  for (size_t i = 0; i < mixed.size(); ++i) {
    float sum = 0;
    for (size_t channel = 0; channel < channels; ++channel) sum += samples[i * channels + channel];
    mixed[i] = sum / static_cast<float>(channels);
  }
}

}  // namespace

bool is_sound(std::string_view first_bytes) {
  using namespace std::string_view_literals;
  static constexpr struct {
    std::string_view magic;
    size_t next;  // where more of it stands, which no text has there
    std::string_view more;
  } kKinds[] = {
      {"RIFF", 8, "WAVE"}, {"RIFX", 8, "WAVE"},   {"RF64", 8, "WAVE"}, {"FORM", 8, "AIFF"}, {"FORM", 8, "AIFC"},
      {"OggS", 4, "\0"sv}, {"fLaC", 5, "\0\0"sv}, {".snd", 4, "\0"sv}, {"caff", 4, "\0"sv},
  };
  return std::any_of(std::begin(kKinds), std::end(kKinds), [&](const auto& kind) {
    return first_bytes.starts_with(kind.magic) && first_bytes.size() >= kind.next &&
           first_bytes.substr(kind.next).starts_with(kind.more);
  });
}

Input sound_in(const Input& input, std::string_view first_bytes, const std::string& path) {
  return starts_anew(input, first_bytes.size(), path) ? input : spooled(input, first_bytes, path);
}

design::Drawing drawing_of_sound(const Input& input, const std::string& path, const design::SoundOptions& options,
                                 const lrasynth_profile& profile) {
  const int descriptor = ::fileno(input.get());
  if (::lseek(descriptor, 0, SEEK_SET) != 0) fail_to_read(path);
  SF_INFO info = {};
  const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> sound(::sf_open_fd(descriptor, SFM_READ, &info, SF_FALSE),
                                                          ::sf_close);
  const auto check = [&] {
    const int error = ::sf_error(sound.get());
    if (error == SF_ERR_SYSTEM) fail_to_read(path);
    if (sound != nullptr && error == SF_ERR_NO_ERROR) return;
    throw Failure(kWrongInput, shown_path(path) + ": is sound that cannot be read: " + ::sf_strerror(sound.get()));
  };
  check();
  // How many frames there are is seen when they are read: heads may lie.
  constexpr size_t kBlock = 65536;
  const auto channels = static_cast<size_t>(info.channels);
  const size_t block = std::max<size_t>(kBlock / channels, 1);
  std::vector<float> samples(block * channels);
  std::vector<float> mixed;
  design::Listener listener(info.samplerate, options);
  do {
    mixed.resize(static_cast<size_t>(::sf_readf_float(sound.get(), samples.data(), static_cast<sf_count_t>(block))));
    check();
    mix(samples, channels, mixed);
    listener.hear(mixed);
  } while (!mixed.empty() && listener.wants_more());
  return listener.drawing(profile);
}

}  // namespace command
