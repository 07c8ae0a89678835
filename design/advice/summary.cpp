// SPDX-License-Identifier: Apache-2.0
// What there is to know about a waveform, in words and numbers.
#include "design/advice/summary.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "design/advice/feel.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/waveform/samples.h"

namespace design {
namespace {

// "0, 80, 40, 0", or one of them where all are the same.
template <class Value>
std::string of_points(const Vibration& vibration, Value value) {
  std::vector<std::string> values;
  for (const lrasynth_point& point : vibration.points) values.push_back(text("%d", value(point)));
  const auto is_first = [&](const std::string& other) { return other == values.front(); };
  if (std::all_of(values.begin(), values.end(), is_first)) return values.front();
  return values[0] + ", " + values[1] + ", " + values[2] + ", " + values[3];
}

// A line for each event of a pattern.
class EventLines {
 public:
  // Without what is felt for an event stream.
  EventLines(const Score& score, const Felt* felt, const Resonator& resonator)
      : score_(score),
        felt_(felt),
        profile_(score.profile()),
        is_stream_(is_event_stream(profile_)),
        resonator_(resonator) {}

  std::string of(size_t i) {
    const Event& event = score_.events()[i];
    const std::optional<double> level = felt_ == nullptr ? std::nullopt : level_of(score_, *felt_, i);
    return "  " + event.name.words() + text(" at %d ms: ", event.start_ms) +
           std::visit([this](const auto& kind) { return description_of(kind); }, event.kind) +
           (level ? ", felt, estimated: " + level_words(*level) : "") + "\n";
  }

 private:
  std::string description_of(const Vibration& vibration) const {
    const std::string intensities = of_points(vibration, [](const lrasynth_point& point) { return point.intensity; });
    const std::string hertz =
        of_points(vibration, [&](const lrasynth_point& point) { return hertz_at(profile_, point.offset); });
    return text("%s of %d ms, intensity ", vibration.is_record ? "record" : "vibration", vibration.duration_ms) +
           intensities + " %, points at " + hertz + " Hz";
  }

  std::string description_of(const Curve& curve) const {
    std::vector<int32_t> intensities;
    std::vector<int32_t> hertz;
    for (const CurvePoint& point : curve.points) {
      intensities.push_back(point.intensity);
      hertz.push_back(hertz_at(profile_, point.offset));
    }
    const auto range = [](const std::vector<int32_t>& values) {
      const auto [least, most] = std::minmax_element(values.begin(), values.end());
      return *least == *most ? text("%d", *least) : text("%d to %d", *least, *most);
    };
    const std::string line =
        text("curve of %d ms, ", curve.duration_ms()) + counted(static_cast<int64_t>(curve.points.size()), "point") +
        (curve.is_felt ? ", to be felt at " : ", intensity ") + range(intensities) + " %, " + range(hertz) + " Hz";
    if (is_stream_) return line + text(", sent as one event of %d %%", curve.sent_strength());
    return line + ", in " + counted(static_cast<int64_t>(curve.parts.size()), "record");
  }

  std::string description_of(const Tap& tap) {
    const bool is_asked = tap.driven == Tap::kAsAsked;
    const char* const how = tap.is_felt() ? "to be felt at" : is_asked ? "intensity" : "asked to be driven at";
    const std::string asked = text("tap, level %d, %s %d %%", tap.level, how, tap.asked());
    if (is_stream_) return asked + (is_asked ? "" : text(", sent as %d", tap.sent_strength()));
    const int32_t driven = driven_intensity(profile_, tap.level, tap.intensity);
    return asked + (driven == tap.asked() && !tap.is_felt() ? "" : text(", driven at %d %%", driven)) +
           response(tap.level, driven);
  }

  // By itself. A pattern has many taps, but few different ones.
  const std::string& response(int32_t level, int32_t driven) {
    const auto [known, is_new] = responses_.emplace(std::pair(level, driven), "");
    if (!is_new) return known->second;
    if (const Waveform tap = tap_waveform(profile_, level, driven); !is_silent(tap)) {
      const Response alone = Motion(tap, resonator_).response();
      known->second = text(", estimated rise %.1f ms, ring-down %.1f ms", alone.rise_ms, alone.ring_down_ms);
    }
    return known->second;
  }

  const Score& score_;
  const Felt* felt_;
  lrasynth_profile profile_;
  bool is_stream_;
  Resonator resonator_;
  std::map<std::pair<int32_t, int32_t>, std::string> responses_;
};

}  // namespace

std::vector<Number> numbers_of(const Piece& piece, const Response& response, const Felt& felt) {
  const Strength strength = strength_of(piece.waveform);
  std::vector<Number> numbers = {
      {"length", text("%.1f ms", piece.waveform.length_ms())},
      {"peak", text("%d of 128", strength.peak)},  // the byte's range
      {"effective", text("%.1f of 128", strength.effective)},
  };
  for (const auto& estimated : {numbers_of(response, piece.score == nullptr), numbers_of(felt)}) {
    for (const auto& [name, value] : estimated) numbers.emplace_back("estimated " + name, value);
  }
  numbers.emplace_back("warnings", grouped(static_cast<int64_t>(piece.warnings.size())));
  return numbers;
}

std::string summary_of(const Piece& piece, const Resonator& resonator) {
  const Waveform& waveform = piece.waveform;
  std::string lines = waveform.title + "\n";
  std::optional<Felt> felt;
  if (!waveform.is_stream) felt.emplace(waveform, resonator);
  if (piece.score != nullptr) {
    EventLines line(*piece.score, felt ? &*felt : nullptr, resonator);
    for (size_t i = 0; i < piece.score->events().size(); ++i) lines += line.of(i);
  }
  if (!felt) return lines + "  " + size_of(piece.waveform) + "\n";
  for (const auto& [name, value] : numbers_of(piece, Motion(waveform, resonator).response(), *felt)) {
    lines += text("  %-28s %s\n", name.c_str(), value.c_str());
  }
  const Jump jump = largest_of(piece.jumps);
  if (jump.height == 0) return lines;
  return lines + text("  largest jump %d at ", jump.height) + ms_text(waveform.ms_of(jump.sample)) + " ms\n";
}

std::string table_of(const std::vector<Piece>& pieces, const std::vector<Motion>& motions,
                     const std::vector<Felt>& felts) {
  constexpr int kColumn = 26;  // of the longest number, "170 Hz, Q 2.65, 1 g rated"
  std::string names;
  std::string head = text("%-28s", "");
  std::vector<std::string> rows;
  for (size_t i = 0; i < pieces.size(); ++i) {
    names += text("%zu: ", i + 1) + pieces[i].waveform.title + "\n";
    head += text("%*zu", kColumn, i + 1);
    const auto numbers = numbers_of(pieces[i], motions[i].response(), felts[i]);
    rows.resize(numbers.size());
    for (size_t row = 0; row < rows.size(); ++row) {
      if (i == 0) rows[row] = text("%-28s", numbers[row].first.c_str());
      rows[row] += text("%*s", kColumn, numbers[row].second.c_str());
    }
  }
  std::string lines = names + head + "\n";
  for (const std::string& row : rows) lines += row + "\n";
  return lines;
}

}  // namespace design
