// SPDX-License-Identifier: Apache-2.0
// Titled waveforms with all that is known of them.
#include "design/piece.h"

#include "design/motor.h"
#include "design/text.h"

namespace design {
namespace {

// The events are without faults, so that the pattern can be served.
Piece pattern_piece(const lrasynth_profile& profile, const Playback& playback, std::vector<Event> events,
                    const std::string& name) {
  constexpr size_t kLongestName = 28;  // as wide as a picture's title has room for
  const auto score = std::make_shared<const Score>(profile, playback, std::move(events));
  const auto read = [score](int64_t first, std::span<uint8_t> window) { score->read(first, window); };
  return {.waveform = {.title = "Pattern: " + shown(name, kLongestName) + ", " + name_of(profile),
                       .profile = profile,
                       .length = score->length(),
                       .read = read,
                       .sections = score->sections()},
          .score = score,
          .warnings = warnings_of(*score)};
}

// Why a piece cannot be served; empty: it can.
std::string fault_of(const Piece& piece, const Playback& playback) {
  constexpr int64_t kMostBytes = 1 << 26;
  if (!piece.is_stream()) {
    const std::string fault = length_fault(piece.waveform.length_ms());
    return fault.empty() || playback.loops == 1 ? fault : fault + ", with all passes and gaps";
  }
  if (piece.waveform.length <= kMostBytes) return "";
  return text("the event stream may have %lld bytes at most", 0LL + kMostBytes);
}

}  // namespace

Piece tap_piece(const lrasynth_profile& profile, int32_t level, int32_t intensity, bool in_pattern) {
  const int32_t driven = in_pattern ? driven_intensity(profile, level, intensity) : intensity;
  Piece piece = {.waveform = tap_waveform(profile, level, driven), .warnings = warnings_of_tap(profile, level, driven)};
  piece.waveform.title = text("Tap: %s, level %d, intensity %d %%", name_of(profile).c_str(), level, intensity) +
                         (in_pattern ? text(" (%d %% in a pattern)", driven) : "");
  return piece;
}

std::string tone_fault(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods) {
  const int32_t most_hz = profile.sample_rate / 2;
  if (frequency_hz < 1 || frequency_hz > most_hz) {
    return "frequency: " + range_fault(1, most_hz, text("%d", frequency_hz)) +
           text(", at %d samples a second", profile.sample_rate);
  }
  const std::string fault = length_fault(500.0 * half_periods / frequency_hz);
  return fault.empty() ? "" : "half-periods: " + fault;
}

Piece tone_piece(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude) {
  Piece piece = {.waveform = tone_waveform(profile, frequency_hz, half_periods, amplitude)};
  piece.waveform.title =
      text("Tone: %d Hz, ", frequency_hz) + counted(half_periods, "half-period") + text(", amplitude %d", amplitude);
  piece.warnings = warnings_of_tone(piece.waveform, amplitude);
  return piece;
}

PatternReading read_piece(const lrasynth_profile& profile, const Playback& playback, std::string_view json,
                          const std::string& name) {
  PatternReading reading = {read_pattern(json), std::nullopt};
  Faults& faults = reading.file.faults;
  add_faults(reading.file.events, profile, playback, faults);
  if (faults.count > 0) return reading;
  reading.piece = pattern_piece(profile, playback, reading.file.events, name);
  const std::string fault = fault_of(*reading.piece, playback);
  if (fault.empty()) return reading;
  faults.add({0, {}, fault});
  reading.piece.reset();
  return reading;
}

}  // namespace design
