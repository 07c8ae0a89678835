// SPDX-License-Identifier: Apache-2.0
// Audio files, block by block.
#include "files.h"

#include <soxr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <sndfile.hh>

namespace command {
namespace {

// A WAV file whose samples come in blocks. Its head is written last, so that a pipe gets it from a copy.
template <class WriteSamples>
void write_file(const Target& target, int sample_rate, WriteSamples write_samples) {
  const bool seekable = ::lseek(target.descriptor, 0, SEEK_CUR) >= 0;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> copy(seekable ? nullptr : std::tmpfile(), std::fclose);
  if (!seekable && copy == nullptr) target.fail(errno);
  const int descriptor = seekable ? target.descriptor : ::fileno(copy.get());
  {
    SndfileHandle file(descriptor, false, SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, sample_rate);
    if (!file) throw Failure(kCannotRender, file.strError());
    file.command(SFC_SET_CLIPPING, nullptr, SF_TRUE);  // where resampling overshoots
    write_samples([&](const auto* samples, size_t count) {
      const auto frames = static_cast<sf_count_t>(count);
      target.write({});
      if (file.write(samples, frames) != frames) target.fail(errno == 0 ? EIO : errno);
    });
  }
  if (seekable) return;
  std::array<char, 1U << 16U> block;
  ::lseek(descriptor, 0, SEEK_SET);
  while (const ssize_t n = ::read(descriptor, block.data(), block.size())) {
    if (n < 0) target.fail(errno);
    target.write({block.data(), static_cast<size_t>(n)});
  }
}

}  // namespace

void write_wav(const design::Waveform& waveform, const Target& target) {
  write_file(target, waveform.profile.sample_rate, [&](auto write) {
    std::vector<int16_t> samples;
    design::for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
      samples.clear();
      for (const uint8_t code : codes) samples.push_back(static_cast<int16_t>(design::amplitude(code) * 256));
      write(samples.data(), samples.size());
    });
  });
}

// The converter's own noise lies at -98 dB (16 bits), that of 8 bits at -50.
void write_audible_wav(const design::Waveform& waveform, const Target& target) {
  constexpr int kRate = 48000;
  const int ratio = kRate / waveform.profile.sample_rate;
  soxr_error_t error = nullptr;
  const soxr_io_spec_t floats = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_16_BITQ, 0);
  const std::unique_ptr<soxr, void (*)(soxr_t)> converter(
      soxr_create(waveform.profile.sample_rate, kRate, 1, &error, &floats, &quality, nullptr), soxr_delete);
  if (converter == nullptr) throw Failure(kCannotRender, soxr_strerror(error));
  write_file(target, kRate, [&](auto write) {
    std::vector<float> samples;
    std::vector<float> resampled;
    // No samples are the end of them.
    const auto convert = [&] {
      resampled.resize((samples.size() + 4096) * static_cast<size_t>(ratio));
      size_t made = 0;
      const soxr_error_t failed = soxr_process(converter.get(), samples.empty() ? nullptr : samples.data(),
                                               samples.size(), nullptr, resampled.data(), resampled.size(), &made);
      if (failed != nullptr) throw Failure(kCannotRender, soxr_strerror(failed));
      write(resampled.data(), made);
      return made;
    };
    design::for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
      samples.clear();
      for (const uint8_t code : codes) samples.push_back(static_cast<float>(design::amplitude(code)) / 128.0F);
      convert();
    });
    samples.clear();
    while (convert() > 0) {
    }
  });
}

}  // namespace command
