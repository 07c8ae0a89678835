// The WAV forms: mono, 16 bits. Exact with the amplitude in the upper byte, or resampled for players that refuse low
// sample rates.
#include <samplerate.h>

#include <algorithm>
#include <sndfile.hh>

#include "output.h"

namespace lrasynth {
namespace {

// A growing byte string as the file that libsndfile writes.
struct Memory {
  std::string bytes;
  size_t position = 0;
};

sf_count_t length(void* user) { return static_cast<sf_count_t>(static_cast<Memory*>(user)->bytes.size()); }

sf_count_t seek(sf_count_t offset, int whence, void* user) {
  auto& memory = *static_cast<Memory*>(user);
  const sf_count_t base = whence == SEEK_SET   ? 0
                          : whence == SEEK_CUR ? static_cast<sf_count_t>(memory.position)
                                               : length(user);
  memory.position = static_cast<size_t>(base + offset);
  return base + offset;
}

sf_count_t read(void* target, sf_count_t count, void* user) {
  auto& memory = *static_cast<Memory*>(user);
  const size_t n = memory.bytes.copy(static_cast<char*>(target), static_cast<size_t>(count), memory.position);
  memory.position += n;
  return static_cast<sf_count_t>(n);
}

sf_count_t write(const void* source, sf_count_t count, void* user) {
  auto& memory = *static_cast<Memory*>(user);
  const auto n = static_cast<size_t>(count);
  memory.bytes.resize(std::max(memory.bytes.size(), memory.position + n));
  memory.bytes.replace(memory.position, n, static_cast<const char*>(source), n);
  memory.position += n;
  return count;
}

sf_count_t tell(void* user) { return static_cast<sf_count_t>(static_cast<Memory*>(user)->position); }

// Clipped where resampling overshoots.
template <class Sample>
std::string wav_file(const std::vector<Sample>& samples, int sample_rate) {
  Memory memory;
  SF_VIRTUAL_IO io = {length, seek, read, write, tell};
  {
    SndfileHandle file(io, &memory, SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, sample_rate);
    file.command(SFC_SET_CLIPPING, nullptr, SF_TRUE);
    const auto count = static_cast<sf_count_t>(samples.size());
    if (file.write(samples.data(), count) != count) throw Failure(kCannotRender, file.strError());
  }
  return memory.bytes;
}

}  // namespace

std::string to_wav(const Waveform& waveform) {
  std::vector<int16_t> samples;
  for (const uint8_t code : waveform.codes) samples.push_back(static_cast<int16_t>(amplitude(code) * 256));
  return wav_file(samples, waveform.sample_rate);
}

std::string to_audible_wav(const Waveform& waveform) {
  constexpr int kRate = 48000;
  const int ratio = kRate / waveform.sample_rate;
  std::vector<float> samples;
  for (const uint8_t code : waveform.codes) samples.push_back(static_cast<float>(amplitude(code)) / 128.0F);
  std::vector<float> resampled(samples.size() * static_cast<size_t>(ratio));
  SRC_DATA data = {};
  data.data_in = samples.data();
  data.input_frames = static_cast<long>(samples.size());
  data.data_out = resampled.data();
  data.output_frames = static_cast<long>(resampled.size());
  data.src_ratio = ratio;
  if (const int error = src_simple(&data, SRC_SINC_BEST_QUALITY, 1)) {
    throw Failure(kCannotRender, src_strerror(error));
  }
  return wav_file(resampled, kRate);
}

}  // namespace lrasynth
