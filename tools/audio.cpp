// SPDX-License-Identifier: Apache-2.0
// Audio files, block by block.
#include <soxr.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <sndfile.hh>

#include "files.h"

namespace command {
namespace {

using Samples = std::vector<int16_t>;

// The converter's noise lies at -98 dB (16 bits), that of 8 bits at -50.
class Resampler {
 public:
  Resampler(int from_rate, int to_rate)
      : ratio_(static_cast<size_t>(to_rate / from_rate)), resampler_(nullptr, soxr_delete) {
    soxr_io_spec_t exact = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
    exact.flags = SOXR_NO_DITHER;  // the same file every time
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_16_BITQ, 0);
    resampler_.reset(soxr_create(from_rate, to_rate, 1, nullptr, &exact, &quality, nullptr));
    if (resampler_ == nullptr) throw Failure(kCannotRender, "cannot resample");
  }

  // What is ready after these samples; none of them are the end.
  Samples convert(const Samples& samples) {
    Samples ready((samples.size() + 4096) * ratio_);
    size_t made = 0;
    soxr_process(resampler_.get(), samples.empty() ? nullptr : samples.data(), samples.size(), nullptr, ready.data(),
                 ready.size(), &made);
    ready.resize(made);
    return ready;
  }

 private:
  size_t ratio_;
  std::unique_ptr<soxr, void (*)(soxr_t)> resampler_;
};

void write_samples(const design::Waveform& waveform, bool audible, int descriptor, const Target& target) {
  constexpr int kAudibleRate = 48000;
  const int own_rate = waveform.profile.sample_rate;
  SndfileHandle file(descriptor, false, SFM_WRITE, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1,
                     audible ? kAudibleRate : own_rate);
  Resampler resampler(own_rate, kAudibleRate);
  const auto write = [&](const Samples& samples) {
    target.stop_if_signalled();
    const auto frames = static_cast<sf_count_t>(samples.size());
    if (file.write(samples.data(), frames) != frames) target.fail(errno == 0 ? EIO : errno);
    return frames > 0;
  };
  design::for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    Samples samples;
    for (const uint8_t code : codes) samples.push_back(static_cast<int16_t>(design::amplitude(code) * 256));
    write(audible ? resampler.convert(samples) : samples);
  });
  while (audible && write(resampler.convert({}))) {
  }
}

}  // namespace

// The head of the file is written last, so that a pipe gets it from a copy in memory.
void write_wav(const design::Waveform& waveform, bool audible, const Target& target) {
  if (::lseek(target.descriptor, 0, SEEK_CUR) >= 0) return write_samples(waveform, audible, target.descriptor, target);
  const int copy = ::memfd_create("wav", MFD_CLOEXEC);
  write_samples(waveform, audible, copy, target);
  constexpr size_t kBlock = 1U << 20U;
  ssize_t sent = 1;
  for (off_t at = 0; sent > 0;) sent = ::sendfile(target.descriptor, copy, &at, kBlock);
  if (sent < 0) target.fail(errno);
}

}  // namespace command
