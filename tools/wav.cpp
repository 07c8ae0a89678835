// SPDX-License-Identifier: Apache-2.0
// The WAV forms: mono, 16 bits. Exact with the amplitude in the upper byte, or resampled for players that refuse low
// sample rates.
#include <samplerate.h>
#include <sys/mman.h>
#include <unistd.h>

#include <sndfile.hh>

#include "output.h"

namespace command {
namespace {

// Written by libsndfile into a file in memory. Clipped where resampling overshoots.
template <class Sample>
std::string wav_file(const std::vector<Sample>& samples, int sample_rate) {
  const int descriptor = ::memfd_create("wav", MFD_CLOEXEC);
  SndfileHandle file(descriptor, true, SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, sample_rate);
  if (!file) throw Failure(kCannotRender, "cannot make a WAV file in memory");
  file.command(SFC_SET_CLIPPING, nullptr, SF_TRUE);
  const auto count = static_cast<sf_count_t>(samples.size());
  if (file.write(samples.data(), count) != count) throw Failure(kCannotRender, file.strError());
  file.command(SFC_UPDATE_HEADER_NOW, nullptr, 0);
  std::string bytes(static_cast<size_t>(::lseek(descriptor, 0, SEEK_END)), '\0');
  if (::pread(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw Failure(kCannotRender, "cannot read the WAV file back");
  }
  return bytes;
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

}  // namespace command
