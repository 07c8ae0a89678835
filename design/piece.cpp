// SPDX-License-Identifier: Apache-2.0
// Titled waveforms with all that is known of them.
#include "design/piece.h"

#include "design/motor.h"
#include "design/text.h"

namespace design {

Piece tap_piece(const lrasynth_profile& profile, int32_t level, int32_t intensity, bool in_pattern) {
  const int32_t driven = in_pattern ? driven_intensity(profile, level, intensity) : intensity;
  Piece piece = {.waveform = tap_waveform(profile, level, driven), .warnings = warnings_of_tap(profile, level, driven)};
  piece.waveform.title = text("Tap: %s, level %d, intensity %d %%", name_of(profile).c_str(), level, intensity) +
                         (in_pattern ? text(" (%d %% in a pattern)", driven) : "");
  return piece;
}

Piece tone_piece(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude) {
  Piece piece = {.waveform = tone_waveform(profile, frequency_hz, half_periods, amplitude)};
  piece.waveform.title =
      text("Tone: %d Hz, ", frequency_hz) + counted(half_periods, "half-period") + text(", amplitude %d", amplitude);
  piece.warnings = warnings_of_tone(piece.waveform, amplitude);
  return piece;
}

Piece pattern_piece(const lrasynth_profile& profile, const Playback& playback, std::vector<Event> events,
                    const std::string& name) {
  const auto score = std::make_shared<const Score>(profile, playback, std::move(events));
  const auto read = [score](int64_t first, std::span<uint8_t> window) { score->read(first, window); };
  return {.waveform = {.title = "Pattern: " + shown(name) + ", " + name_of(profile),
                       .profile = profile,
                       .length = score->length(),
                       .read = read,
                       .sections = score->sections()},
          .score = score,
          .warnings = warnings_of(*score)};
}

}  // namespace design
