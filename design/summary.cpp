// SPDX-License-Identifier: Apache-2.0
// What there is to know about a waveform, in words and numbers.
#include "design/summary.h"

#include <algorithm>

#include "design/carrier.h"
#include "design/forms.h"
#include "design/motor.h"
#include "design/text.h"

namespace design {
namespace {

std::string words_of(const lrasynth_profile& profile, const Event& event) {
  if (!event.continuous) {
    const int32_t driven = driven_intensity(profile, event.level, event.intensity);
    const std::string share =
        driven == event.intensity || is_event_stream(profile) ? "" : text(", driven at %d %%", driven);
    return text("tap, level %d, intensity %d %%", event.level, event.intensity) + share;
  }
  const auto [low, high] = std::minmax_element(event.points.begin(), event.points.end(),
                                               [](auto& a, auto& b) { return a.intensity < b.intensity; });
  std::string frequencies;
  for (const CurvePoint& point : event.points) {
    const std::string hz = text("%d", hertz_at(profile, point.offset));
    if (!frequencies.ends_with(hz)) frequencies += (frequencies.empty() ? "" : ", ") + hz;
  }
  return text("vibration of %d ms, intensity %d to %d %%, points at ", event.duration_ms, low->intensity,
              high->intensity) +
         frequencies + " Hz";
}

std::string event_lines(const Score& score) {
  std::string lines;
  for (const Event& event : score.events()) {
    lines += text("  event %d at %d ms: ", event.number, event.start_ms) + words_of(score.profile(), event) + "\n";
  }
  return lines;
}

}  // namespace

std::vector<Number> numbers_of(const Response& response) {
  return {
      {"at", text("%.4g Hz, Q %.4g", response.resonator.hz, response.resonator.quality)},
      {"rise to 90 %", text("%.1f ms", response.rise_ms)},
      {"ring-down to 10 %", text("%.1f ms", response.ring_down_ms)},
      {"peak", text("%.1f %%", 100 * response.peak)},
      {"effective", text("%.1f %%", 100 * response.effective)},
  };
}

std::vector<Number> numbers_of(const Piece& piece, const Response& response) {
  const Strength strength = strength_of(piece.waveform);
  std::vector<Number> numbers = {
      {"length", text("%.1f ms", piece.waveform.length_ms())},
      {"peak", text("%d", strength.peak)},
      {"effective", text("%.1f", strength.effective)},
  };
  for (const auto& [name, value] : numbers_of(response)) numbers.emplace_back("estimated " + name, value);
  numbers.emplace_back("warnings", text("%zu", piece.warnings.size()));
  return numbers;
}

std::string summary_of(const Piece& piece, const Resonator& resonator) {
  const Waveform& waveform = piece.waveform;
  std::string lines = waveform.title + "\n";
  if (piece.score != nullptr) lines += event_lines(*piece.score);
  if (piece.is_stream()) return lines + "  " + size_of(piece) + "\n";
  for (const auto& [name, value] : numbers_of(piece, Motion(waveform, resonator).response())) {
    lines += text("  %-28s %s\n", name.c_str(), value.c_str());
  }
  const Jump jump = piece.score != nullptr ? largest_restart(*piece.score) : Jump();
  if (jump.event == 0) return lines;
  return lines + text("  the phase restarts at every point; the largest jump there is %d, event %d at %.10g ms\n",
                      jump.height, jump.event, jump.at_ms);
}

std::string table_of(const std::vector<Piece>& pieces, const std::vector<Motion>& motions) {
  std::string names;
  std::string head = text("%-28s", "");
  std::vector<std::string> rows;
  for (size_t i = 0; i < pieces.size(); ++i) {
    names += text("%zu: ", i + 1) + pieces[i].waveform.title + "\n";
    head += text("%16zu", i + 1);
    const auto numbers = numbers_of(pieces[i], motions[i].response());
    rows.resize(numbers.size());
    for (size_t row = 0; row < rows.size(); ++row) {
      if (i == 0) rows[row] = text("%-28s", numbers[row].first.c_str());
      rows[row] += text("%16s", numbers[row].second.c_str());
    }
  }
  std::string lines = names + head + "\n";
  for (const std::string& row : rows) lines += row + "\n";
  return lines;
}

}  // namespace design
