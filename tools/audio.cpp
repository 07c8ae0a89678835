// SPDX-License-Identifier: Apache-2.0
// Audio files at another rate than their waveform's.
#include <soxr.h>

#include <algorithm>
#include <bit>
#include <memory>

#include "design/base/text.h"
#include "design/waveform/samples.h"
#include "files.h"

namespace command {
namespace {

constexpr int32_t kRate = 48000;

int64_t audible_length(const design::Waveform& waveform) {
  return waveform.length * kRate / waveform.profile.sample_rate;
}

}  // namespace

std::string audible_size_of(const design::Waveform& waveform) {
  return design::counted(audible_length(waveform), "sample") +
         design::text(" at %d a second, %.1f ms", kRate, waveform.length_ms());
}

// The converter's noise lies at -98 dB (16 bits), that of 8 bits at -50.
void write_audible_wav(const design::Waveform& waveform, Target& target) {
  const auto most_ratio = static_cast<size_t>(kRate / waveform.profile.sample_rate + 1);
  soxr_io_spec_t exact = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
  exact.flags = SOXR_NO_DITHER;  // the same file every time
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_16_BITQ, 0);
  const std::unique_ptr<soxr, void (*)(soxr_t)> resampler(
      soxr_create(waveform.profile.sample_rate, kRate, 1, nullptr, &exact, &quality, nullptr), soxr_delete);
  if (resampler == nullptr) throw Failure(kCannotRender, "cannot resample");
  int64_t left = audible_length(waveform);
  target.write(design::wav_head(kRate, left));
  std::vector<int16_t> samples;
  std::vector<int16_t> ready;
  bool failed = false;
  // Passes on what is ready after these samples; none of them are the end.
  const auto convert = [&] {
    static_assert(std::endian::native == std::endian::little, "as in the file");
    ready.resize((samples.size() + 4096) * most_ratio);
    size_t made = 0;
    failed |= soxr_process(resampler.get(), samples.empty() ? nullptr : samples.data(), samples.size(), nullptr,
                           ready.data(), ready.size(), &made) != nullptr;
    made = static_cast<size_t>(std::min(left, static_cast<int64_t>(made)));
    left -= static_cast<int64_t>(made);
    target.write({reinterpret_cast<const char*>(ready.data()), made * sizeof(int16_t)});
    return made > 0;
  };
  design::for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    samples.clear();
    for (const uint8_t code : codes) samples.push_back(static_cast<int16_t>(design::amplitude(code) * 256));
    convert();
    return target.error == 0;
  });
  samples.clear();
  while (convert()) {
  }
  if (failed || (left > 0 && target.error == 0)) throw Failure(kCannotRender, "cannot resample");
}

}  // namespace command
