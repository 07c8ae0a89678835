// SPDX-License-Identifier: Apache-2.0
// Fuzz driver for files from elsewhere: the first byte chooses the motor, whether what is read is written again, and
// whether the rest are samples of sound.
#include <cstdint>
#include <cstdlib>

#include "design/base/motor.h"
#include "design/formats/formats.h"

using namespace design;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

// What is read is a pattern of ours or has faults, and what is written of it is read again without any.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const lrasynth_profile profile = lrasynth_profile_of(0, motors()[data[0] % 4], data[0] / 4 % 2);
  const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
  PatternFile file = read_file(text, Tuning(profile));
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
    if (is_read(format)) require(read_file(written, Tuning(profile)).faults.count == 0);
  }
  return 0;
}
