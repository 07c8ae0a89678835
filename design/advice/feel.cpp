// SPDX-License-Identifier: Apache-2.0
// What of a pattern a finger will hardly feel, or not tell apart.
#include "design/advice/feel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/waveform/stretch.h"

namespace design {
namespace {

std::string rated_words(const Felt& felt) { return text("estimated at %.4g g rated", felt.resonator().rated_g); }

std::string faint_words(const Felt& felt, double level) {
  return "may not be felt: " + text("%.1f dB above threshold, ", level) + rated_words(felt) +
         text("; %.0f are needed", kHardlyFelt);
}

// From one turn of the intensity to the next, points from..to.
struct Ramp {
  size_t from;
  size_t to;
};

std::vector<Ramp> ramps_of(const std::vector<Asked>& line) {
  std::vector<Ramp> ramps;
  const auto way = [&](size_t i) {
    const double change = line[i + 1].intensity - line[i].intensity;
    return change > 0 ? 1 : change < 0 ? -1 : 0;
  };
  for (size_t i = 0; i + 1 < line.size(); ++i) {
    if (way(i) == 0) continue;
    if (i > 0 && way(i - 1) == way(i)) {
      ramps.back().to = i + 1;
    } else {
      ramps.push_back({i, i + 1});
    }
  }
  return ramps;
}

// The lowest and the highest of some levels.
struct Range {
  double low = std::numeric_limits<double>::infinity();
  double high = 0;

  void add(double level) { *this = {std::min(low, level), std::max(high, level)}; }
  bool is_narrow() const { return high - low < kToldApart; }
};

class Feeling {
 public:
  Feeling(const Score& score, const Felt& felt) : score_(score), felt_(felt), profile_(score.profile()) {}

  std::vector<Warning> warnings() {
    for (size_t i = 0; i < score_.events().size(); ++i) inspect(i);
    return std::move(warnings_);
  }

 private:
  void warn(const Event& event, double since_start_ms, std::string what, std::string kind) {
    warnings_.push_back({event.name, event.start_ms + since_start_ms, std::move(what), std::move(kind), true});
  }

  void inspect(size_t i) {
    const std::optional<double> level = level_of(score_, felt_, i);
    if (!level) return;
    const Event& event = score_.events()[i];
    if (*level < kHardlyFelt) {
      if (drives(event)) warn(event, 0, faint_words(felt_, *level), "faint");
      return;
    }
    inspect_length(i, *level);
    const std::vector<Asked> line = event.is_felt() ? felt_line_of(event) : line_of(profile_, event);
    for (const Ramp& ramp : ramps_of(line)) inspect_ramp(i, line, ramp);
  }

  // Whether it is asked to: what is silent is warned of as such.
  bool drives(const Event& event) const {
    if (const Tap* const tap = event.tap()) {
      return !is_silent(tap_waveform(profile_, tap->level, driven_intensity(profile_, tap->level, tap->intensity)));
    }
    const std::vector<Stretch> stretches = stretches_of(profile_, event);
    return std::any_of(stretches.begin(), stretches.end(), [](const Stretch& stretch) {
      return std::max(stretch.from_amplitude, stretch.to_amplitude) >= 1;
    });
  }

  // The most that a short event adds to what is felt around it is its own level by itself, in phase.
  void inspect_length(size_t i, double level) {
    constexpr double kShortMs = 10;
    if (score_.span_of(i).length() >= kShortMs) return;
    const double alone = level_alone(score_.events()[i]);
    const double most = 20 * std::log10(1 + std::pow(10, (alone - level) / 20));
    if (most >= kToldApart) return;
    warn(score_.events()[i], 0,
         text("adds nothing: it is shorter than %.0f ms and %.1f dB below what is felt there, ", kShortMs,
              level - alone) +
             rated_words(felt_),
         "adds nothing");
  }

  // A pattern has many short events, but few different ones.
  double level_alone(const Event& event) {
    const Waveform alone = event_waveform(profile_, event);
    std::string codes(static_cast<size_t>(alone.length), '\0');
    for_blocks(alone, [&](int64_t first, std::span<const uint8_t> block) {
      std::copy(block.begin(), block.end(), codes.begin() + first);
      return true;
    });
    const auto [known, is_new] = alone_.emplace(std::move(codes), 0);
    if (is_new) known->second = Felt(alone, felt_.resonator()).strongest();
    return known->second;
  }

  // As it is asked for, whatever drives the motor for it.
  static std::vector<Asked> felt_line_of(const Event& event) {
    std::vector<Asked> line;
    if (event.curve() == nullptr) return line;
    for (size_t i = 0; i < event.curve()->points.size(); ++i) {
      const double percent = event.curve()->points[i].intensity;
      line.push_back(
          {.ms = static_cast<double>(event.curve()->point_ms(i)), .intensity = percent, .hz = 0, .amplitude = 0});
    }
    return line;
  }

  // As tones that last are felt along the line.
  void inspect_ramp(size_t i, const std::vector<Asked>& line, Ramp ramp) {
    constexpr double kLeastMs = 40;  // in shorter time no level is felt by itself
    const Event& event = score_.events()[i];
    const Asked& from = line[ramp.from];
    const Asked& to = line[ramp.to];
    if (to.ms - from.ms < kLeastMs) return;
    Range range;
    for (size_t at = ramp.from; at < ramp.to; ++at) {
      event.is_felt() ? add_asked(line[at], line[at + 1], range) : add_levels(line[at], line[at + 1], range);
    }
    if (!range.is_narrow() || range.high < kHardlyFelt) return;
    const Span span = Span{from.ms, to.ms}.moved(event.start_ms);
    const auto& heard = score_.heard(i);
    if (std::none_of(heard.begin(), heard.end(), [&](Span part) { return overlap(part, span); })) return;
    warn(event, from.ms,
         text("from point %zu to %zu it feels constant: from %.0f to %.0f %% its levels stay within %.1f dB, ",
              ramp.from + 1, ramp.to + 1, from.intensity, to.intensity, range.high - range.low) +
             rated_words(felt_) + text("; %.1f can just be told apart", kToldApart),
         "constant");
  }

  static void add_asked(const Asked& from, const Asked& to, Range& range) {
    for (const Asked* const point : {&from, &to}) range.add(kFullyFelt * point->intensity / 100);
  }

  void add_levels(const Asked& from, const Asked& to, Range& range) const {
    constexpr int kSteps = 8;
    for (int step = 0; step <= kSteps; ++step) {
      const double share = static_cast<double>(step) / kSteps;
      const double hz = from.hz + share * (to.hz - from.hz);
      const double amplitude = from.amplitude + share * (to.amplitude - from.amplitude);
      range.add(tone_level(amplitude / kFullScale * tone_g(felt_.resonator(), hz), hz));
    }
  }

  const Score& score_;
  const Felt& felt_;
  lrasynth_profile profile_;
  std::map<std::string, double> alone_;  // of samples
  std::vector<Warning> warnings_;
};

}  // namespace

std::optional<double> level_of(const Score& score, const Felt& felt, size_t event) {
  if (score.heard(event).empty()) return std::nullopt;
  const Span span = score.span_of(event);
  return felt.strongest({span.from, span.to + kFeltAfterMs});
}

std::vector<Warning> felt_warnings_of(const Score& score, const Felt& felt) { return Feeling(score, felt).warnings(); }

std::vector<Warning> felt_warnings_of(const Felt& felt) {
  const double level = felt.strongest();
  if (level >= kHardlyFelt) return {};
  return {{{}, 0, faint_words(felt, level), "faint", true}};
}

std::vector<Warning> warnings_of(const std::vector<Unreached>& unreached, const Resonator& resonator) {
  std::vector<Warning> warnings;
  for (const Unreached& at : unreached) {
    const std::string which = at.point == 0 ? "" : text("point %zu ", at.point);
    warnings.push_back({at.event, at.at_ms,
                        which + text("is to be felt at %d %% and is at %.0f %%, the most of this motor, estimated at "
                                     "%.4g g rated",
                                     at.asked, at.reached, resonator.rated_g),
                        "unreached"});
  }
  return warnings;
}

// Taps that are asked to be equally strong are meant to feel so, and of faint ones a warning tells more.
std::vector<std::string> felt_notes_of(const Score& score, const Felt& felt) {
  const Event* before = nullptr;
  double before_level = 0;
  std::string first;
  int64_t count = 0;
  for (size_t i = 0; i < score.events().size(); ++i) {
    const Event& event = score.events()[i];
    const std::optional<double> level = level_of(score, felt, i);
    if (event.tap() == nullptr || !level) continue;
    const bool differ = before != nullptr && before->tap()->asked() != event.tap()->asked();
    if (differ && std::max(before_level, *level) >= kHardlyFelt && std::fabs(*level - before_level) < kToldApart &&
        count++ == 0) {
      first = before->name.words() + " and " + event.name.words() +
              text(
                  " can hardly be told apart by strength: taps of %d and %d %% feel like %.1f and %.1f dB above "
                  "threshold, ",
                  before->tap()->asked(), event.tap()->asked(), before_level, *level) +
              rated_words(felt) + text(", and less than %.1f dB are not felt", kToldApart);
    }
    before = &event;
    before_level = *level;
  }
  if (count == 0) return {};
  return {first + (count == 1 ? "" : "; likewise " + counted(count - 1, "other pair") + " of neighbouring taps")};
}

}  // namespace design
