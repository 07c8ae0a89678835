// SPDX-License-Identifier: Apache-2.0
// What a designer can and would avoid in a waveform.
#include "design/advice/warnings.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>

#include "design/base/length.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/pattern/compile.h"
#include "design/waveform/stretch.h"

namespace design {
namespace {

constexpr uint8_t kFalsePeak = 128;        // as a driver reads it, -128
constexpr int kHighJump = 32;              // sample units: a quarter of full scale
constexpr double kFarFromPoint = 0.25;     // of the frequency that a point names, and of the stronger amplitude
constexpr ptrdiff_t kFew = 4;              // warnings alike that are told one by one
constexpr double kLeastAmplitude = 4;      // that is looked at
constexpr int32_t kMostStreamMs = 0xFFFF;  // 16 bits

// Samples of 128 that stand between positive ones.
int64_t false_peaks(const Waveform& waveform) {
  int64_t count = 0;
  int before = 0;
  bool open = false;  // a 128 after a positive sample
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    for (const uint8_t code : codes) {
      const bool is_peak = code == kFalsePeak;
      open = is_peak && (open || before > 0);
      count += open ? 1 : 0;
      before = is_peak ? 0 : amplitude(code);
    }
    return true;
  });
  return count;
}

std::string peaks_text(int64_t count, const std::string& most) {
  return counted(count, "positive peak") + (count == 1 ? " is" : " are") +
         " coded as 128, which a driver reads as -128; " + most + " has none";
}

// What is told, and the kind of it; nothing where there is nothing to tell.
struct Concern {
  std::string what;
  std::string kind;
};

// A tap, by itself or in a pattern.
struct AskedTap {
  const lrasynth_profile& profile;
  int32_t level;
  int32_t intensity;
  bool in_pattern;
  const char* strength = "intensity";

  bool is_silent_at(int32_t asked) const { return is_silent(tap_waveform(profile, level, driven(asked))); }
  int32_t driven(int32_t asked) const { return in_pattern ? driven_intensity(profile, level, asked) : asked; }
  int64_t false_peaks_at(int32_t asked) const { return false_peaks(tap_waveform(profile, level, driven(asked))); }
};

Concern silence_of(const AskedTap& tap) {
  if (!tap.is_silent_at(tap.intensity)) return {};
  if (tap.intensity == 0) return {text("is silent: its %s is 0", tap.strength), "is silent"};
  int32_t least = tap.intensity + 1;
  while (least < 100 && tap.is_silent_at(least)) ++least;
  const std::string how = tap.in_pattern ? text(", driven at %d %%", tap.driven(tap.intensity)) : "";
  return {text("is silent: level %d at %s %d %%%s, is all rest; %s %d is the least that drives the motor", tap.level,
               tap.strength, tap.intensity, how.c_str(), tap.strength, least),
          "is silent"};
}

Concern false_peaks_of(const AskedTap& tap) {
  const int64_t count = tap.false_peaks_at(tap.intensity);
  if (count == 0) return {};
  int32_t most = tap.intensity - 1;
  while (most > 0 && tap.false_peaks_at(most) > 0) --most;
  return {peaks_text(count, text("%s %d", tap.strength, most)), "false peaks"};
}

// A stored burst keeps its number of samples whatever their rate.
Concern slowness_of(const AskedTap& tap) {
  const lrasynth_profile full = lrasynth_profile_of(0, tap.profile.motor_type, tap.profile.boost_flag);
  const auto samples = static_cast<double>(tap_length(tap.profile, tap.level).samples);
  const bool is_same = tap_length(full, tap.level).samples == tap_length(tap.profile, tap.level).samples;
  if (!is_same || samples == 0 || full.sample_rate == tap.profile.sample_rate) return {};
  return {text("its stored burst is made for %d samples a second and lasts %s ms here, not %s ms", full.sample_rate,
               ms_text(1000 * samples / tap.profile.sample_rate).c_str(),
               ms_text(1000 * samples / full.sample_rate).c_str()),
          "stored burst"};
}

std::vector<Concern> concerns_of(const AskedTap& tap) {
  std::vector<Concern> concerns = {silence_of(tap), false_peaks_of(tap), slowness_of(tap)};
  std::erase_if(concerns, [](const Concern& concern) { return concern.what.empty(); });
  return concerns;
}

// Rest beside it.
int amplitude_at(const Waveform& waveform, int64_t sample) {
  uint8_t code = 0;
  if (sample >= 0 && sample < waveform.length) waveform.read(sample, {&code, 1});
  return amplitude(code);
}

// The warnings of one pattern.
class Inspection {
 public:
  Inspection(const Score& score, const std::vector<Jump>& jumps)
      : score_(score), jumps_(jumps), profile_(score.profile()), heard_(score.all_heard()) {}

  std::vector<Warning> run() {
    if (score_.events().empty()) return {};
    is_event_stream(profile_) ? inspect_stream() : inspect_samples();
    const auto earlier = [](const Warning& a, const Warning& b) { return a.at_ms < b.at_ms; };
    std::stable_sort(warnings_.begin(), warnings_.end(), earlier);
    return std::move(warnings_);
  }

 private:
  void warn(const Event& event, double since_start_ms, std::string what, std::string kind = {}) {
    warnings_.push_back({event.name, event.start_ms + since_start_ms, std::move(what), std::move(kind)});
  }

  void inspect_samples() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      inspect_cover(i);
      inspect_end(i);
      const Event& event = score_.events()[i];
      std::visit([&](const auto& kind) { inspect_kind(i, event, kind); }, event.kind);
    }
    inspect_jumps();
    inspect_closing();
  }

  // Of two events of one kind the one that starts later plays; a tap in a vibration is meant so.
  void inspect_cover(size_t i) {
    const Event& event = score_.events()[i];
    const bool never = score_.heard(i).empty() && score_.span_of(i).length() > 0;
    std::vector<std::string> others;
    double since_start_ms = 0;  // of the first of them
    for (const Heard& other : heard_within(score_.span_of(i))) {
      const Event& over = score_.events()[other.event];
      if (other.event == i || (!never && !in_one_layer(over, event))) continue;
      if (others.empty()) since_start_ms = std::max(0.0, other.span.from - event.start_ms);
      others.push_back(text("%d", over.name.entry) + over.name.inside);
    }
    if (others.empty()) return;
    const bool one = others.size() == 1;
    const std::string names = (one ? "event " : "events ") + enumerated(std::move(others));
    if (never) return warn(event, 0, "never plays: " + names + (one ? " covers it" : " cover it"), "cover");
    warn(event, since_start_ms, names + (one ? " plays over it" : " play over it"), "cover");
  }

  // As many as a line has room for.
  static std::string enumerated(std::vector<std::string> numbers) {
    constexpr size_t kMost = 5;
    const size_t rest = numbers.size() - std::min(kMost, numbers.size());
    if (rest > 0) {
      numbers.resize(kMost);
      numbers.push_back(grouped(static_cast<int64_t>(rest)) + " more");
    }
    return listed(numbers, "and");
  }

  // Of each event that is heard in that span its first part there.
  std::vector<Heard> heard_within(Span within) const {
    std::vector<Heard> parts;
    std::set<size_t> known;
    const auto is_before = [&](const Heard& heard) { return heard.span.to <= within.from; };
    auto at = std::partition_point(heard_.begin(), heard_.end(), is_before);
    for (; at != heard_.end() && at->span.from < within.to; ++at) {
      if (known.insert(at->event).second) parts.push_back(*at);
    }
    return parts;
  }

  bool is_heard(size_t event, Span within) const {
    const auto& heard = score_.heard(event);
    return std::any_of(heard.begin(), heard.end(), [&](Span span) { return overlap(span, within); });
  }

  void inspect_end(size_t i) {
    const Event& event = score_.events()[i];
    const double missing_ms = event.end_ms(profile_) - score_.span_of(i).to;
    if (missing_ms <= 0) return;
    warn(event, 0,
         text("its last %.3g ms are cut; a limit of %d ms would let them play", missing_ms,
              score_.request().missing_ms));
  }

  void inspect_kind(size_t, const Event& event, const Tap& tap) {
    const bool is_asked = tap.driven == Tap::kAsAsked;
    const AskedTap asked = {profile_, tap.level, tap.strongest(), is_asked, is_asked ? "intensity" : "driven"};
    for (const Concern& concern : concerns_of(asked)) {
      warn(event, 0, concern.what, concern.kind);
    }
  }

  void inspect_kind(size_t i, const Event& event, const Vibration& vibration) {
    const auto is_silent_point = [](const lrasynth_point& point) { return point.intensity == 0; };
    if (std::all_of(vibration.points.begin(), vibration.points.end(), is_silent_point)) {
      return warn(event, 0, "is silent: the intensity of all its points is 0");
    }
    for (const Stretch& stretch : vibration.is_record ? std::vector<Stretch>() : stretches_of(profile_, event)) {
      if (std::max(stretch.from_amplitude, stretch.to_amplitude) < kLeastAmplitude) continue;
      if (!is_heard(i, stretch.span.moved(event.start_ms))) continue;
      inspect_sweep(event, stretch);
      inspect_envelope(event, stretch);
    }
  }

  void inspect_kind(size_t, const Event& event, const Curve& curve) {
    if (curve.strongest() == 0) return warn(event, 0, "is silent: the intensity of all its points is 0");
    for (size_t i = 0; i < curve.points.size(); ++i) {
      const CurvePoint& point = curve.points[i];
      const int32_t hz = hertz_at(profile_, point.offset);
      if (point.asked_hz == 0 || std::abs(hz - point.asked_hz) <= near_hz(point.asked_hz)) continue;
      warn(event, curve.point_ms(i),
           text("point %zu asks for %d Hz and plays %d Hz, the nearest of this motor", i + 1, point.asked_hz, hz),
           "hz");
    }
    inspect_line(event);
  }

  // Where a curve is too steep, or its points too dense, to be followed away from them.
  void inspect_line(const Event& event) {
    constexpr double kFarAmplitude = 8;  // sample units
    constexpr double kFarHz = 2.5;       // times what counts as near
    const std::vector<Asked> line = line_of(profile_, event);
    double worst_hz = 0;
    double worst_amplitude = 0;
    double at_ms = 0;
    size_t to = 1;
    for (const Stretch& stretch : stretches_of(profile_, event)) {
      for (const double third : {0.0, 1.0, 2.0, 3.0}) {
        const double ms = stretch.span.from + stretch.span.length() * third / 3;
        while (to + 1 < line.size() && line[to].ms < ms) ++to;
        const Asked& a = line[to - 1];
        const Asked& b = line[to];
        if (ms < a.ms + kSeamMs || ms > b.ms - kSeamMs) continue;
        const double share = (ms - a.ms) / (b.ms - a.ms);
        const double hz = a.hz + (b.hz - a.hz) * share;
        const double drawn = a.amplitude + (b.amplitude - a.amplitude) * share;
        const double off_amplitude = std::fabs(stretch.amplitude_at(ms) - drawn);
        const double off_hz = drawn < kLeastAmplitude ? 0 : std::fabs(stretch.hz_at(ms) - hz);
        if (off_amplitude <= kFarAmplitude && off_hz <= kFarHz * near_hz(hz)) continue;
        if (worst_hz == 0 && worst_amplitude == 0) at_ms = ms;
        worst_hz = std::max(worst_hz, off_hz);
        worst_amplitude = std::max(worst_amplitude, off_amplitude);
      }
    }
    if (worst_hz == 0 && worst_amplitude == 0) return;
    warn(event, at_ms,
         text("it is too steep to be followed: it plays up to %.0f Hz and %.0f of 127 beside its line", worst_hz,
              worst_amplitude),
         "steep");
  }

  void inspect_sweep(const Event& event, const Stretch& stretch) {
    if (std::fabs(stretch.reached_hz() - stretch.to_hz) <= kFarFromPoint * stretch.to_hz) return;
    const std::string way = stretch.reached_hz() < 0
                                ? text("runs through 0 Hz and back up to %.0f Hz", -stretch.reached_hz())
                                : text("reaches %.0f Hz, not %.0f Hz", stretch.reached_hz(), stretch.to_hz);
    warn(event, stretch.span.from,
         text("from point %zu to %zu its carrier %s", stretch.to_point, stretch.to_point + 1, way.c_str()) +
             remedy_of_sweep(event, stretch),
         "sweep");
  }

  // The offset with which the carrier ends nearest to what the point says.
  std::string remedy_of_sweep(const Event& event, const Stretch& stretch) const {
    const auto reached_at = [&](int32_t offset) { return 2 * hertz_at(profile_, offset) - stretch.from_hz; };
    int32_t best = event.vibration()->points[stretch.to_point].offset;
    for (int32_t offset = -50; offset <= 50; ++offset) {
      const auto off_hz = [&](int32_t at) { return std::fabs(reached_at(at) - stretch.to_hz); };
      if (off_hz(offset) < off_hz(best)) best = offset;
    }
    if (std::fabs(reached_at(best) - stretch.to_hz) > kFarFromPoint * stretch.to_hz) return "";
    return text("; to end at %.0f Hz set point %zu to offset %d", reached_at(best), stretch.to_point + 1, best);
  }

  void inspect_envelope(const Event& event, const Stretch& stretch) {
    const double reached = stretch.reached_amplitude();
    const double off = std::fabs(reached - stretch.to_amplitude);
    if (off < kLeastAmplitude || off <= kFarFromPoint * std::max(stretch.from_amplitude, stretch.to_amplitude)) return;
    warn(
        event, stretch.span.from,
        text("from point %zu to %zu its envelope turns back halfway at %d samples a second: it ends at amplitude %.0f, "
             "not %.0f",
             stretch.to_point, stretch.to_point + 1, profile_.sample_rate, reached, stretch.to_amplitude),
        "envelope");
  }

  // Where no curve merely goes on to its next point.
  void inspect_jumps() {
    std::vector<Jump> jumps = jumps_;
    std::erase_if(jumps, [](const Jump& jump) { return jump.height < kHighJump || jump.is_restart; });
    for (const Jump& jump : jumps) {
      const bool to_rest = jump.to == Jump::kRest;
      const Event& event = score_.events()[to_rest ? jump.from : jump.to];
      const std::string from = jump.from == Jump::kRest ? "rest" : score_.events()[jump.from].name.words();
      const std::string way = to_rest ? "to rest" : "from " + from;
      const double at_ms = 1000.0 * static_cast<double>(jump.sample) / profile_.sample_rate;
      warn(event, at_ms - event.start_ms,
           text("the samples jump by %d, ", jump.height) + way + (&jump - jumps.data() < kFew ? remedy_of(jump) : ""),
           "jump");
    }
  }

  std::string remedy_of(const Jump& jump) const {
    const auto& events = score_.events();
    if (jump.from == Jump::kRest) return "";
    const int64_t end = std::llround(score_.span_of(jump.from).to * profile_.sample_rate / 1000);
    if (events[jump.from].tap() == nullptr && jump.sample == end) return remedy_of_end(events[jump.from], jump);
    if (jump.to == Jump::kRest || in_one_layer(events[jump.from], events[jump.to])) return "";
    return events[jump.to].tap() != nullptr ? remedy_of_tap(jump.to, jump.from) : remedy_of_tap(jump.from, jump.to);
  }

  // A vibration that ends there fades instead.
  std::string remedy_of_end(Event event, const Jump& jump) const {
    size_t last = 3;
    if (auto* const curve = std::get_if<Curve>(&event.kind)) {
      last = curve->points.size() - 1;
      curve->played().back().intensity = 0;
    } else {
      std::get<Vibration>(event.kind).points[last].intensity = 0;
    }
    CurveCompiler compiler(profile_);
    event.fit(compiler);
    const Waveform faded = event_waveform(profile_, event);
    uint8_t next = 0;
    if (jump.sample < score_.length()) score_.read(jump.sample, {&next, 1});
    const int height = std::abs(amplitude(next) - amplitude_at(faded, faded.length - 1));
    if (height >= kHighJump) return "";
    return "; to end " + event.name.words() + text(" at rest set its point %zu to intensity 0", last + 1);
  }

  // The nearest start with which a tap breaks into a vibration and hands back to it by less.
  std::string remedy_of_tap(size_t tap, size_t vibration) const {
    constexpr int32_t kFarthestMs = 10;
    const Event& moved = score_.events()[tap];
    const auto& heard = score_.heard(vibration);
    const Span own = score_.span_of(tap);
    const auto before = std::find_if(heard.begin(), heard.end(), [&](Span span) { return span.to == own.from; });
    const auto after = std::find_if(heard.begin(), heard.end(), [&](Span span) { return span.from == own.to; });
    if (before == heard.end() || after == heard.end()) return "";
    const Waveform over = event_waveform(profile_, moved);
    const Waveform under = event_waveform(profile_, score_.events()[vibration]);
    const int64_t per_ms = profile_.sample_rate / 1000;
    for (int32_t by = 1; by <= kFarthestMs; ++by) {
      for (const int32_t shift : {by, -by}) {
        const int32_t to_ms = moved.start_ms + shift;
        const bool fits = own.from + shift > before->from && own.to + shift < after->to;
        if (!fits || reads_as_type(to_ms)) continue;
        const int64_t at = per_ms * (to_ms - score_.events()[vibration].start_ms);
        const int in = std::abs(amplitude_at(over, 0) - amplitude_at(under, at - 1));
        const int out = std::abs(amplitude_at(under, at + over.length) - amplitude_at(over, over.length - 1));
        if (std::max(in, out) >= kHighJump) continue;
        return "; with " + moved.name.words() + text(" at %d ms the jumps would be %d and %d", to_ms, in, out);
      }
    }
    return "";
  }

  // Whether starting an event earlier spares the pattern its longer end.
  bool ends_before(size_t event, int32_t by_ms) const {
    std::vector<Event> events = score_.events();
    events[event].start_ms -= by_ms;
    CurveCompiler compiler(profile_);
    events[event].fit(compiler);
    std::stable_sort(events.begin(), events.end(), starts_before);
    return request_of(std::move(events), profile_, score_.playback()).added_ms == 0;
  }

  void inspect_closing() {
    const Request& request = score_.request();
    const Event& last = score_.events()[request.last_event];
    if (request.added_ms > 0) {
      const int32_t end = request.closing_ms - request.added_ms;
      const int32_t by_ms = end - LRASYNTH_CONTINUOUS + 1;
      warn(last, last.end_ms(profile_) - last.start_ms,
           text("it ends last, at %d ms, which would read as an event: the pattern ends at %d ms", end,
                request.closing_ms) +
               (ends_before(request.last_event, by_ms) ? text("; start it %d ms earlier to end before", by_ms) : ""));
    }
    if (request.is_open) {
      warn(last, last.end_ms(profile_) - last.start_ms,
           text("it ends last but its record does not stand last: take the buffer's size from "
                "getLongSignalBufferLength; a limit "
                "of %d ms would let a record close the pattern",
                request.missing_ms));
    }
  }

  void inspect_stream() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      const Event& event = score_.events()[i];
      const int32_t delta_ms = event.start_ms - (i == 0 ? 0 : score_.events()[i - 1].start_ms);
      if (delta_ms > kMostStreamMs) {
        wrap(event.name, event.start_ms, i == 0 ? "its start" : "the time since the event before", delta_ms);
      }
      if (event.sent_ms() > kMostStreamMs) wrap(event.name, event.start_ms, "its duration", event.sent_ms());
      const bool of_point = event.vibration() != nullptr && !event.vibration()->is_record;
      const char* const sent = of_point ? "the intensity of point 2, which is sent," : "its intensity";
      if (event.sent_strength() == 0) warn(event, 0, text("is silent: %s is 0", sent));
    }
    inspect_stream_total();
  }

  void inspect_stream_total() {
    int64_t total_ms = score_.events().back().start_ms;
    for (const Event& event : score_.events()) total_ms += event.sent_ms();
    total_ms *= score_.playback().loops;
    if (total_ms > kMostStreamMs) wrap({}, 0, "the total time", total_ms);
  }

  void wrap(const EventName& event, double at_ms, const char* what, int64_t ms) {
    warnings_.push_back({event, at_ms,
                         text("%s, %lld ms, is told in 16 bits and becomes %lld ms; %d ms is the most", what,
                              static_cast<long long>(ms), static_cast<long long>(ms & kMostStreamMs), kMostStreamMs)});
  }

  const Score& score_;
  const std::vector<Jump>& jumps_;
  lrasynth_profile profile_;
  std::vector<Heard> heard_;  // all parts, disjoint and ascending
  std::vector<Warning> warnings_;
};

const std::string& kind_of(const Warning& warning) { return warning.kind.empty() ? warning.what : warning.kind; }

// Of warnings that say the same, or nearly so: what the first of them says.
std::string line_of_several(const std::vector<const Warning*>& alike) {
  const Warning& first = *alike.front();
  if (alike.size() == 1) return line_of(first);
  std::set<std::string> events;
  for (const Warning* const warning : alike) events.insert(warning->event.words());
  const auto count = static_cast<int64_t>(events.size());
  const bool differ = std::any_of(alike.begin(), alike.end(), [&](auto* other) { return other->what != first.what; });
  std::string line = count > 1 ? "in " + grouped(count) + " events, first " : "";
  line += line_of(first) + (differ ? "; the others likewise" : "");
  if (alike.size() > events.size()) line += text(" (%s places)", grouped(static_cast<int64_t>(alike.size())).c_str());
  return line;
}

}  // namespace

std::string line_of(const Warning& warning) {
  const std::string where = warning.event.words() + " at " + ms_text(warning.at_ms) + " ms: ";
  return (warning.event.entry > 0 ? where : "") + warning.what;
}

std::vector<std::string> lines_of(const std::vector<Warning>& warnings, size_t most) {
  std::map<std::string_view, std::set<std::string_view>> ways;  // to say the same
  for (const Warning& warning : warnings) ways[kind_of(warning)].insert(warning.what);
  const auto said = [&](const Warning& warning) -> const std::string& {
    return std::ssize(ways[kind_of(warning)]) > kFew ? kind_of(warning) : warning.what;
  };
  std::map<std::string_view, std::vector<const Warning*>> alike;
  for (const Warning& warning : warnings) alike[said(warning)].push_back(&warning);
  std::vector<std::string> lines;
  size_t untold = 0;
  for (const Warning& warning : warnings) {
    const auto& same = alike[said(warning)];
    if (same.front() != &warning) continue;
    lines.size() < most ? lines.push_back(line_of_several(same)) : void(untold += same.size());
  }
  if (untold > 0) {
    lines.push_back("and " + grouped(static_cast<int64_t>(untold)) +
                    (untold == 1 ? " more warning" : " more warnings"));
  }
  return lines;
}

std::vector<Warning> warnings_of_tap(const lrasynth_profile& profile, int32_t level, int32_t intensity,
                                     bool in_pattern) {
  std::vector<Warning> warnings;
  for (const Concern& concern : concerns_of({profile, level, intensity, in_pattern})) {
    warnings.push_back({{}, 0, concern.what, concern.kind});
  }
  return warnings;
}

std::vector<Warning> warnings_of_tone(const Waveform& tone, int32_t amplitude) {
  const int64_t count = false_peaks(tone);
  if (count == 0) return {};
  return {{{}, 0, peaks_text(count, text("amplitude %d", amplitude - 1))}};
}

std::vector<Warning> warnings_of(const Score& score, const std::vector<Jump>& jumps) {
  return Inspection(score, jumps).run();
}

}  // namespace design
