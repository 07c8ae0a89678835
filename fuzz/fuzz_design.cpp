// SPDX-License-Identifier: Apache-2.0
// Fuzz driver for what people write: the first bytes choose chip, motor and loops, the rest is a pattern's text.
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "design/forms.h"
#include "design/motor.h"
#include "design/piece.h"
#include "design/plot.h"
#include "design/summary.h"

using namespace design;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data + 2), size - 2);
  const int32_t chips[] = {0, LRASYNTH_CHIP_HALF_RATE, LRASYNTH_CHIP_EVENT_STREAM, 2};
  const lrasynth_profile profile = lrasynth_profile_of(chips[data[0] % 4], kMotors[data[0] / 4 % 4], data[0] / 16 % 2);
  const Playback playback = {1 + data[1] % 8, data[1] / 8, data[1] % 3 == 0 ? 500 : LRASYNTH_NO_LIMIT};
  const auto [file, read] = read_piece(profile, playback, text, std::string(text));
  if (file.faults.lines(std::string(text)).empty() != (file.faults.count == 0)) std::abort();
  if (read.has_value() != (file.faults.count == 0)) std::abort();
  if (!read) return 0;
  const std::string canonical = canonical_json(file.events);
  if (canonical_json(read_pattern(canonical).events) != canonical) std::abort();
  const Piece& piece = *read;
  if (piece.waveform.length < 0) std::abort();
  if (piece.waveform.length > 200'000) return 0;
  const std::string summary = summary_of(piece, {});
  if (!piece.is_stream()) {
    const Motion motion(piece.waveform, {});
    plot_of(piece, &motion, felt_span(piece.waveform, &motion));
  }
  write_csv(piece, [](std::string_view) { return true; });
  return 0;
}
