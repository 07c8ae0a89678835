// SPDX-License-Identifier: Apache-2.0
// Fuzz driver for what listens to sound: the first bytes choose motor, rate and options, the rest are samples.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "design/base/motor.h"
#include "design/formats/formats.h"
#include "design/formats/sound.h"

using namespace design;

namespace {

constexpr size_t kChoices = 3;  // bytes before the samples

// A byte makes eight, of alternating signs in its own rhythm.
std::vector<float> rhythms(const uint8_t* data, size_t size) {
  std::vector<float> samples;
  for (size_t i = 0; i < size; ++i) {
    const float value = static_cast<float>(static_cast<int8_t>(data[i])) / 128;
    for (int j = 0; j < 8; ++j) samples.push_back(j / (1 + data[i] % 4) % 2 == 0 ? value : -value);
  }
  return samples;
}

// Whatever numbers the bytes make, or none.
std::vector<float> numbers(const uint8_t* data, size_t size) {
  std::vector<float> samples(size / sizeof(float));
  if (!samples.empty()) std::memcpy(samples.data(), data, samples.size() * sizeof(float));
  return samples;
}

}  // namespace

// What is heard is a pattern without faults, or says why there is none.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < kChoices) return 0;
  const lrasynth_profile profile = lrasynth_profile_of(0, motors()[data[0] % 4], data[0] / 4 % 2);
  const double rates[] = {1000, 8000, 22'050, 48'000, 384'000, 999, 0, 1e12};
  const SoundOptions options = {.taps = data[1] % 3 != 1,
                                .curves = data[1] % 3 != 2,
                                .floor_db = kLeastFloorDb + data[1] / 4.0,
                                .gain_db = data[2] / 4.0 - 20,
                                .from_ms = data[2] % 5 == 0 ? 20.0 : 0.0,
                                .to_ms = data[2] % 7 == 0 ? 90.0 : 0.0};
  const bool is_rhythm = data[0] / 128 == 0;
  const std::vector<float> samples =
      is_rhythm ? rhythms(data + kChoices, size - kChoices) : numbers(data + kChoices, size - kChoices);
  Listener listener(rates[data[0] / 8 % 8], options);
  for (size_t first = 0; first < samples.size(); first += 1000) {
    listener.hear(std::span(samples).subspan(first, std::min<size_t>(1000, samples.size() - first)));
  }
  Drawing drawing = listener.drawing(profile);
  const bool has_faults = drawing.faults.count > 0;
  const PatternFile file = file_of(std::move(drawing));
  if ((file.faults.count > 0) != has_faults) std::abort();
  return 0;
}
