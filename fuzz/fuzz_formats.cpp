// SPDX-License-Identifier: Apache-2.0
// Fuzz driver for files from elsewhere: the first byte chooses the motor, whether what is read is written again, and
// whether the rest are samples of sound.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "design/base/motor.h"
#include "design/formats/formats.h"
#include "design/formats/sound.h"

using namespace design;

namespace {

constexpr uint8_t kSound = 0xF0;  // from there on, seldom, since it takes long

void require(bool holds) {
  if (!holds) std::abort();
}

// As quick samples, of which a byte makes sixteen, or as they stand.
PatternFile file_of_sound(const lrasynth_profile& profile, uint8_t choice, const uint8_t* data, size_t size) {
  std::vector<float> samples;
  for (size_t i = 0; choice % 2 == 0 && i < size; ++i) {
    for (int j = 0; j < 16; ++j) {
      samples.push_back(static_cast<float>(static_cast<int8_t>(data[i])) / 128 *
                        ((i * 16 + j) % (2 + data[i] % 7) == 0 ? 1 : -1));
    }
  }
  if (choice % 2 == 1) {
    samples.resize(size / sizeof(float));
    std::memcpy(samples.data(), data, samples.size() * sizeof(float));
  }
  const SoundOptions options = {
      .taps = choice / 2 % 3 != 1, .curves = choice / 2 % 3 != 2, .gain_db = choice / 8 - 10.0};
  Listener listener(choice < 128 ? 8000 : 1000 + 3000 * choice, options);
  for (size_t first = 0; first < samples.size(); first += 1000) {
    listener.hear(std::span(samples).subspan(first, std::min<size_t>(1000, samples.size() - first)));
  }
  return file_of(listener.drawing(profile));
}

}  // namespace

// What is read is a sound pattern of ours or has faults, and what is written of it is read again without any.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const lrasynth_profile profile = lrasynth_profile_of(0, motors()[data[0] % 4], data[0] / 4 % 2);
  const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
  PatternFile file =
      data[0] >= kSound ? file_of_sound(profile, data[1], data + 2, size - 2) : read_file(text, Tuning(profile));
  require(file.faults.lines(std::string(text)).empty() == (file.faults.count == 0));
  // Curves take long to compile.
  constexpr size_t kMostBytes = 2000;
  const bool is_written = data[0] / 64 % 2 == 1 && file.faults.count == 0 && file.source->text.size() < kMostBytes;
  if (!is_written) return 0;
  fit(file.events, profile);
  add_faults(file.events, profile, {}, file.faults);
  if (file.faults.count > 0) return 0;
  const Score score(profile, {}, file.events);
  if (score.fault() || score.length() > 20'000'000) return 0;
  for (const Format& format : formats()) {
    if (format.write == nullptr) continue;
    Losses losses;
    const std::string written = format.write(score, *file.source, losses);
    const bool is_read = format.is_json != nullptr || format.is_xml != nullptr || &format == formats().data();
    if (is_read) require(read_file(written, Tuning(profile)).faults.count == 0);
  }
  return 0;
}
