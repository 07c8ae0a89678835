// SPDX-License-Identifier: Apache-2.0
// Titled waveforms with all that is known of them.
#include "design/advice/piece.h"

#include <algorithm>

#include "design/advice/feel.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/formats/formats.h"
#include "design/waveform/drive.h"

namespace design {
namespace {

std::string title_of(const std::string& name, const lrasynth_profile& profile, const Playback& playback) {
  constexpr size_t kLongestName = 28;  // as wide as a picture's title has room for
  std::string title = "Pattern: " + shown_name(name, kLongestName) + ", " + name_of(profile);
  if (playback.loops > 1) title += text(", %d times", playback.loops);
  const bool has_gaps = playback.loops > 1 && playback.interval_ms > 0 && !is_event_stream(profile);
  if (has_gaps) title += text(", %d ms apart", playback.interval_ms);
  return title;
}

Piece pattern_piece(std::shared_ptr<const Score> score, const std::string& name) {
  const bool is_stream = is_event_stream(score->profile());
  std::vector<Jump> jumps = is_stream ? std::vector<Jump>() : jumps_of(*score);
  std::vector<Warning> warnings = warnings_of(*score, jumps);
  const auto read = [score](int64_t first, std::span<uint8_t> window) { score->read(first, window); };
  return {.waveform = {.title = title_of(name, score->profile(), score->playback()),
                       .profile = score->profile(),
                       .length = score->length(),
                       .read = read,
                       .sections = score->sections(),
                       .is_stream = is_stream},
          .score = score,
          .jumps = std::move(jumps),
          .warnings = std::move(warnings)};
}

template <class Item>
void append(std::vector<Item>& items, std::vector<Item> others) {
  items.insert(items.end(), std::make_move_iterator(others.begin()), std::make_move_iterator(others.end()));
}

// Of the first pass, in which all events stand.
Felt felt_of_pass(const Piece& piece, const Resonator& resonator) {
  constexpr double kBeyondMs = 60;  // as far as a pass is looked at, with the second half of the last frame
  Waveform first = piece.waveform;
  first.length = std::min(first.length, first.sample_at(piece.score->pass_ms() + kBeyondMs));
  return {first, resonator};
}

void set_felt(Piece& piece, std::vector<Warning> warnings) {
  std::erase_if(piece.warnings, [](const Warning& warning) { return warning.is_felt; });
  append(piece.warnings, std::move(warnings));
  const auto earlier = [](const Warning& a, const Warning& b) { return a.at_ms < b.at_ms; };
  std::stable_sort(piece.warnings.begin(), piece.warnings.end(), earlier);
}

void feel_pass(Piece& piece, const Felt& felt) {
  piece.levels.clear();
  for (size_t i = 0; i < piece.score->events().size(); ++i) piece.levels.push_back(level_of(*piece.score, felt, i));
  set_felt(piece, felt_warnings_of(*piece.score, felt));
}

// Why a pattern cannot be served; empty: it can.
std::string fault_of_length(const Score& score) {
  constexpr int64_t kMostBytes = 1 << 26;
  if (!is_event_stream(score.profile())) {
    const std::string fault = length_fault(1000.0 * static_cast<double>(score.length()) / score.profile().sample_rate);
    return fault.empty() || score.playback().loops == 1 ? fault : fault + ", with all passes and gaps";
  }
  if (score.length() <= kMostBytes) return "";
  return text("the event stream may have %lld bytes at most", 0LL + kMostBytes);
}

// What of a file does nothing on this chip, or something else.
void note_chip(const lrasynth_profile& profile, bool is_asked, PatternFile& file) {
  if (!is_asked && !is_chip(profile.chip_type)) {
    file.notes.push_back(text("chip %d acts as 0", profile.chip_type));
  }
  if (!is_event_stream(profile)) return;
  if (file.setup.interval_ms) file.notes.push_back(text("interval: does nothing with chip %d", profile.chip_type));
  if (file.setup.limit_ms) file.notes.push_back(text("limit: does nothing with chip %d", profile.chip_type));
  const auto is_curve = [](const Event& event) { return event.curve() != nullptr; };
  const auto count = std::count_if(file.events.begin(), file.events.end(), is_curve);
  if (count == 0) return;
  file.notes.push_back(counted(count, "curve") +
                       (count == 1 ? " is sent as one event of its" : " are sent as one event each, of their") +
                       " largest intensity");
}

}  // namespace

void feel(Piece& piece, const Resonator& resonator) {
  if (piece.waveform.is_stream) return;
  if (piece.score != nullptr) return feel_pass(piece, felt_of_pass(piece, resonator));
  if (!is_silent(piece.waveform)) set_felt(piece, felt_warnings_of(Felt(piece.waveform, resonator)));
}

Piece tap_piece(const lrasynth_profile& profile, int32_t level, int32_t intensity, bool in_pattern,
                const Resonator& resonator) {
  const int32_t driven = in_pattern ? driven_intensity(profile, level, intensity) : intensity;
  Piece piece = {.waveform = tap_waveform(profile, level, driven),
                 .warnings = warnings_of_tap(profile, level, intensity, in_pattern)};
  piece.waveform.title = text("Tap: %s, level %d, intensity %d %%", name_of(profile).c_str(), level, intensity) +
                         (in_pattern ? text(" (%d %% in a pattern)", driven) : "");
  feel(piece, resonator);
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

Piece tone_piece(const lrasynth_profile& profile, int32_t frequency_hz, int32_t half_periods, int32_t amplitude,
                 const Resonator& resonator) {
  Piece piece = {.waveform = tone_waveform(profile, frequency_hz, half_periods, amplitude)};
  piece.waveform.title =
      text("Tone: %d Hz, ", frequency_hz) + counted(half_periods, "half-period") + text(", amplitude %d", amplitude);
  piece.warnings = warnings_of_tone(piece.waveform, amplitude);
  feel(piece, resonator);
  return piece;
}

PatternReading read_piece(const Setup& asked, std::string_view text, const std::string& name,
                          const Resonator& resonator) {
  return piece_of(asked, read_file(text, Tuning(asked.profile())), name, resonator);
}

PatternReading piece_of(const Setup& asked, PatternFile read, const std::string& name, const Resonator& resonator) {
  PatternReading reading = {merged(asked, read.setup), std::move(read), std::nullopt};
  PatternFile& file = reading.file;
  Faults& faults = file.faults;
  const lrasynth_profile profile = reading.setup.profile();
  Setup heeded = file.setup;
  if (!has_boost(profile)) heeded.boost.reset();
  for (std::string& line : overrides(asked, heeded)) file.notes.push_back(std::move(line));
  const Playback playback = reading.setup.playback();
  const std::vector<Unreached> unreached = drive(file.events, profile, resonator);
  fit(file.events, profile);
  add_faults(file.events, profile, playback, faults);
  if (faults.count > 0) return reading;
  note_chip(profile, asked.chip.has_value(), file);
  auto score = std::make_shared<const Score>(profile, playback, file.events);
  if (score->fault()) {
    faults.add(*score->fault());
  } else if (std::string fault = fault_of_length(*score); !fault.empty()) {
    // With a single pass it is the last event that lasts too long.
    const bool is_long = playback.loops == 1 && !is_event_stream(profile);
    const Event last = is_long ? score->events()[score->request().last_event] : Event();
    faults.add({last.name, last.place, std::move(fault)});
  } else {
    reading.piece = pattern_piece(std::move(score), name);
    reading.piece->source = file.source;
    append(reading.piece->warnings, warnings_of(unreached, resonator));
    if (is_event_stream(profile)) return reading;
    const Felt felt = felt_of_pass(*reading.piece, resonator);
    feel_pass(*reading.piece, felt);
    append(file.notes, felt_notes_of(*reading.piece->score, felt));
  }
  return reading;
}

}  // namespace design
