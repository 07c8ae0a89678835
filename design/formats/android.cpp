// SPDX-License-Identifier: Apache-2.0
// Android's vibration effects from their XML, with every fault and its place, and drawings as such effects.
#include "design/formats/android.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "design/base/text.h"
#include "design/pattern/event.h"

namespace design {
namespace {

using Words = std::vector<std::string>;

// Ours: the time that a tap takes among effects that play one after another, and how far two of one effect are apart.
constexpr int32_t kTapMs = 20;
constexpr int32_t kDoubleTapMs = 100;

// Ours: what primitives and predefined effects are, of full strength. Taps, and a line that rises from rest and falls
// to it, with a tap's level as its sharpness.
struct Shape {
  const char* name;
  int32_t taps;
  double strength;
  double level;
  int32_t rise_ms = 0;
  int32_t fall_ms = 0;

  int32_t last_tap_ms() const { return (taps - 1) * kDoubleTapMs; }
  // A tap has no end of its own, but the next effect waits for it.
  int32_t end_ms() const { return std::max(last_tap_ms(), rise_ms + fall_ms); }
  int32_t length_ms() const { return std::max(end_ms(), last_tap_ms() + kTapMs); }
};

constexpr Shape kTick = {"tick", 1, 50, 90};
constexpr Shape kLowTick = {"low_tick", 1, 50, 15};
constexpr Shape kClick = {"click", 1, 100, 70};

constexpr Shape kPrimitives[] = {
    kClick,
    {"thud", 1, 100, 10, 0, 300},
    {"spin", 0, 100, 50, 75, 75},
    {"quick_rise", 0, 100, 50, 150, 0},
    {"slow_rise", 0, 100, 50, 500, 0},
    {"quick_fall", 0, 100, 50, 0, 100},
    kTick,
    kLowTick,
};

constexpr Shape kPredefined[] = {kTick, kClick, {"heavy_click", 1, 100, 40}, {"double_click", 2, 100, 70}};

constexpr const char* kEffectRoots[] = {"vibration-effect", "vibration"};
constexpr const char* kSelection = "vibration-select";

// An effect has to have something in it.
constexpr const char* kEmptyEffect =
    "  <basic-envelope-effect>\n    <control-point intensity=\"0\" sharpness=\"0.5\" durationMs=\"20\"/>\n"
    "  </basic-envelope-effect>\n";

constexpr const char* kPause = "pause";
constexpr const char* kFromStart = "relative_start_offset";  // of the primitive before

bool is_effect(const XmlElement& element) {
  return std::find(std::begin(kEffectRoots), std::end(kEffectRoots), element.name) != std::end(kEffectRoots);
}

// A number among the attributes.
struct Field {
  const char* name;
  double least;
  double most;
  bool is_above = false;  // more than the least
};

constexpr Field kScale = {"scale", 0, 1};
constexpr int32_t kFullAmplitude = 255;

// The points of an envelope.
struct Envelope {
  Field strength;
  Field pitch;
  Field initial_pitch;
  bool is_hz;
  bool ends_at_rest;

  DrawnPoint point(double ms, double intensity, double pitch_there) const {
    if (is_hz) return {ms, 100 * intensity, 0, pitch_there};
    return {ms, 100 * intensity, offset_of_sharpness(pitch_there), 0};
  }
};

constexpr Envelope kWaveformEnvelope = {
    {"amplitude", 0, 1}, {"frequencyHz", 0, 10'000, true}, {"initialFrequencyHz", 0, 10'000, true}, true, false};
constexpr Envelope kBasicEnvelope = {{"intensity", 0, 1}, {"sharpness", 0, 1}, {"initialSharpness", 0, 1}, false, true};

// Digits with a point and an exponent; what else a C library takes for a number is none.
std::optional<double> number_of(std::string_view word) {
  constexpr size_t kLongest = 64;
  if (word.empty() || word.size() > kLongest || word.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
    return {};
  const std::string digits(word);
  char* end = nullptr;
  const double number = std::strtod(digits.c_str(), &end);
  return *end == '\0' ? std::optional(number) : std::nullopt;
}

std::string name_of(const XmlElement& element) { return shown(element.name); }

class Reader {
 public:
  explicit Reader(Drawing& drawing) : drawing_(drawing) {}

  void read(const XmlElement& root) {
    if (is_effect(root)) return read_effects(root);
    const XmlElement* first = nullptr;
    int64_t others = 0;
    for (const XmlElement& child : root.children) {
      if (!is_effect(child)) {
        pass_over();
      } else if (first == nullptr) {
        first = &child;
      } else {
        ++others;
      }
    }
    drawing_.losses.add("other effect", "left out of the selection", others);
    if (first == nullptr) return fault_of(root, "has no vibration-effect");
    read_effects(*first);
  }

 private:
  struct Kind {
    std::string_view name;
    void (Reader::*read)(const XmlElement& effect);
  };

  static const Kind kKinds[6];

  void fault_of(const XmlElement& element, const std::string& what) {
    drawing_.fault(element.place, name_of(element) + ": " + what);
  }
  void fault_of(const XmlAttribute& attribute, const std::string& what) {
    drawing_.fault(attribute.place, std::string(attribute.name) + ": " + what);
  }

  void pass_over() { drawing_.losses.add("unknown element", "left out"); }

  // Until then the effects so far play.
  void advance(const XmlElement& element, int32_t until_ms) {
    if (until_ms > kLongestMs && !is_too_long_) {
      is_too_long_ = true;
      fault_of(element, text("goes on until %d ms, longer than %d", until_ms, kLongestMs));
    }
    cursor_ms_ = std::max(cursor_ms_, std::min(until_ms, kLongestMs));
  }

  const XmlAttribute* required(const XmlElement& element, const char* name) {
    const XmlAttribute* const attribute = element.attribute(name);
    if (attribute == nullptr) drawing_.fault(element.place, text("%s: is missing", name));
    return attribute;
  }

  double number(const XmlAttribute& attribute, const Field& field) {
    const std::optional<double> number = number_of(attribute.value);
    if (number && (field.is_above ? *number > field.least : *number >= field.least) && *number <= field.most) {
      return *number;
    }
    const char* const range = field.is_above ? "above %g and at most %g" : "from %g to %g";
    fault_of(attribute, "must be a number " + text(range, field.least, field.most) + ", not " + echo(attribute.value));
    return field.least;
  }
  std::optional<double> optional_number(const XmlElement& element, const Field& field) {
    const XmlAttribute* const attribute = element.attribute(field.name);
    return attribute == nullptr ? std::nullopt : std::optional(number(*attribute, field));
  }
  double required_number(const XmlElement& element, const Field& field) {
    const XmlAttribute* const attribute = required(element, field.name);
    return attribute == nullptr ? field.least : number(*attribute, field);
  }

  int32_t whole(const XmlAttribute& attribute, int32_t most, const char* or_else = "") {
    const std::optional<int32_t> whole = whole_number(attribute.value);
    if (whole && *whole >= 0 && *whole <= most) return *whole;
    std::string range = range_fault(0, most, echo(attribute.value));
    fault_of(attribute, range.insert(range.find("a whole"), or_else));
    return 0;
  }
  int32_t duration(const XmlElement& element) {
    const XmlAttribute* const attribute = required(element, "durationMs");
    return attribute == nullptr ? 0 : whole(*attribute, kLongestMs);
  }

  void read_effects(const XmlElement& list) {
    bool has_effect = false;
    for (const XmlElement& child : list.children) {
      const auto is_child = [&](const Kind& kind) { return kind.name == child.name; };
      const Kind* const kind = std::find_if(std::begin(kKinds), std::end(kKinds), is_child);
      if (kind == std::end(kKinds)) {
        pass_over();
        continue;
      }
      has_effect = true;
      (this->*kind->read)(child);
      if (kind->read != &Reader::read_primitive) primitive_ms_.reset();
    }
    if (!has_effect) fault_of(list, "has no effect");
  }

  // Whether a child stands where it may: what repeats has nothing behind it.
  bool is_in_order(const XmlElement& child, bool& has_repeated) {
    const bool is_repeating = child.name == "repeating";
    if (has_repeated) {
      fault_of(child, is_repeating ? "stands there twice" : "stands behind what repeats");
      return false;
    }
    has_repeated = is_repeating;
    drawing_.losses.add("repeating part", "played once", is_repeating ? 1 : 0);
    return true;
  }

  void read_repeating(const XmlElement& effect) {
    bool has_part = false;
    bool has_repeated = false;
    for (const XmlElement& child : effect.children) {
      if (child.name != "preamble" && child.name != "repeating") {
        pass_over();
        continue;
      }
      has_part = true;
      primitive_ms_.reset();
      if (is_in_order(child, has_repeated)) read_effects(child);
    }
    if (!has_part) fault_of(effect, "has no preamble and no repeating");
  }

  void read_waveform(const XmlElement& effect) {
    DrawnCurve curve;
    read_entries(effect, true, curve);
    if (!curve.empty()) drawing_.curves.push_back(std::move(curve));
  }

  void read_entries(const XmlElement& list, bool may_repeat, DrawnCurve& curve) {
    bool has_entry = false;
    bool has_repeated = false;
    for (const XmlElement& child : list.children) {
      const bool is_repeating = may_repeat && child.name == "repeating";
      if (!is_repeating && child.name != "waveform-entry") {
        pass_over();
        continue;
      }
      has_entry = true;
      if (!is_in_order(child, has_repeated)) continue;
      is_repeating ? read_entries(child, false, curve) : read_entry(child, curve);
    }
    if (!has_entry) fault_of(list, "has no waveform-entry");
  }

  void read_entry(const XmlElement& entry, DrawnCurve& curve) {
    const int32_t ms = duration(entry);
    const XmlAttribute* const attribute = required(entry, "amplitude");
    if (attribute == nullptr) return;
    const bool is_default = attribute->value == "default";
    const int32_t amplitude = is_default ? kFullAmplitude : whole(*attribute, kFullAmplitude, "default or ");
    if (ms == 0) return;
    const double intensity = 100.0 * amplitude / kFullAmplitude;
    const bool goes_on = !curve.empty() && curve.back().intensity == intensity;
    if (!goes_on) curve.push_back({1.0 * cursor_ms_, intensity});
    advance(entry, cursor_ms_ + ms);
    if (goes_on) curve.pop_back();
    curve.push_back({1.0 * cursor_ms_, intensity});
  }

  void read_waveform_envelope(const XmlElement& effect) { read_envelope(effect, kWaveformEnvelope); }
  void read_basic_envelope(const XmlElement& effect) { read_envelope(effect, kBasicEnvelope); }

  void read_envelope(const XmlElement& effect, const Envelope& envelope) {
    const std::optional<double> initial_pitch = optional_number(effect, envelope.initial_pitch);
    DrawnCurve curve;
    const XmlAttribute* last = nullptr;
    for (const XmlElement& child : effect.children) {
      if (child.name != "control-point") {
        pass_over();
        continue;
      }
      const double intensity = required_number(child, envelope.strength);
      const double pitch = required_number(child, envelope.pitch);
      const int32_t ms = duration(child);
      last = child.attribute(envelope.strength.name);
      if (curve.empty()) curve.push_back(envelope.point(cursor_ms_, 0, initial_pitch.value_or(pitch)));
      advance(child, cursor_ms_ + ms);
      curve.push_back(envelope.point(cursor_ms_, intensity, pitch));
    }
    if (curve.empty()) return fault_of(effect, "has no control-point");
    if (envelope.ends_at_rest && last != nullptr && curve.back().intensity > 0) {
      fault_of(*last, "must be 0 at the last control-point, not " + echo(last->value));
    }
    drawing_.curves.push_back(std::move(curve));
  }

  // The shape of that name; null, with a fault, where there is none.
  template <size_t kCount>
  const Shape* shape_of(const XmlElement& effect, const Shape (&shapes)[kCount]) {
    const XmlAttribute* const name = required(effect, "name");
    if (name == nullptr) return nullptr;
    const auto is_named = [&](const Shape& shape) { return shape.name == name->value; };
    const Shape* const shape = std::find_if(std::begin(shapes), std::end(shapes), is_named);
    if (shape != std::end(shapes)) return shape;
    Words names;
    for (const Shape& known : shapes) names.emplace_back(known.name);
    fault_word(*name, names);
    return nullptr;
  }

  void fault_word(const XmlAttribute& attribute, const Words& known) {
    const std::string_view word = attribute.value;
    fault_of(attribute, "must be " + listed(known) + ", not " + echo(word) + did_you_mean(word, known));
  }

  void read_predefined(const XmlElement& effect) {
    if (const Shape* const shape = shape_of(effect, kPredefined)) play(effect, *shape, cursor_ms_, 1);
  }

  void read_primitive(const XmlElement& effect) {
    const Shape* const shape = shape_of(effect, kPrimitives);
    const double scale = optional_number(effect, kScale).value_or(1);
    const XmlAttribute* const delay = effect.attribute("delayMs");
    const int32_t delay_ms = delay == nullptr ? 0 : whole(*delay, kLongestMs);
    const XmlAttribute* const type = effect.attribute("delayType");
    const bool is_from_start = type != nullptr && type->value == kFromStart;
    if (type != nullptr && !is_from_start && type->value != kPause) fault_word(*type, {kPause, kFromStart});
    if (shape == nullptr) return;
    primitive_ms_ = (is_from_start && primitive_ms_ ? *primitive_ms_ : cursor_ms_) + delay_ms;
    play(effect, *shape, *primitive_ms_, scale);
    primitive_ms_ = std::min(*primitive_ms_, kLongestMs);
  }

  void play(const XmlElement& effect, const Shape& shape, int32_t start_ms, double scale) {
    const double strength = scale * shape.strength;
    for (int32_t i = 0; i < shape.taps; ++i) {
      drawing_.taps.push_back({1.0 * start_ms + i * kDoubleTapMs, strength, shape.level});
    }
    const double offset = offset_of_sharpness(shape.level / 100);
    DrawnCurve curve;
    const auto add = [&](int32_t ms, double intensity) { curve.push_back({1.0 * start_ms + ms, intensity, offset}); };
    if (shape.rise_ms > 0) add(0, 0);
    if (shape.rise_ms + shape.fall_ms > 0) add(shape.rise_ms, strength);
    if (shape.fall_ms > 0) add(shape.rise_ms + shape.fall_ms, 0);
    if (!curve.empty()) drawing_.curves.push_back(std::move(curve));
    advance(effect, start_ms + shape.end_ms());
    cursor_ms_ = std::max(cursor_ms_, std::min(start_ms, kLongestMs) + shape.length_ms());
  }

  Drawing& drawing_;
  int32_t cursor_ms_ = 0;                // where the next effect starts
  std::optional<int32_t> primitive_ms_;  // where the primitive just before it started
  bool is_too_long_ = false;
};

const Reader::Kind Reader::kKinds[] = {
    {"waveform-effect", &Reader::read_waveform},
    {"waveform-envelope-effect", &Reader::read_waveform_envelope},
    {"basic-envelope-effect", &Reader::read_basic_envelope},
    {"primitive-effect", &Reader::read_primitive},
    {"predefined-effect", &Reader::read_predefined},
    {"repeating-effect", &Reader::read_repeating},
};

// What the platform asks of an envelope.
constexpr int32_t kLeastApartMs = 20;
constexpr int32_t kShortestMs = 2 * kLeastApartMs;  // from rest to rest, with a point between
constexpr size_t kMostPoints = 16;

constexpr double kRest = 0.5;     // intensities up to that are written as rest
constexpr double kSameLevel = 1;  // levels are the same up to that

struct Point {
  int32_t ms;
  double intensity;
  double offset;
  const Tuning* tuning = nullptr;  // of the motor on which the line to the next point plays, if it is known

  bool sounds() const { return intensity > kRest; }
};

using Line = std::vector<Point>;

int32_t whole_ms(double ms) { return static_cast<int32_t>(std::lround(std::clamp(ms, 0.0, 1.0 * kLongestMs))); }

Point between(const Point& from, const Point& to, int32_t ms) {
  const DrawnPoint point = between(DrawnPoint{1.0 * from.ms, from.intensity, from.offset},
                                   {1.0 * to.ms, to.intensity, to.offset}, ms, from.tuning);
  return {ms, std::min(100.0, point.intensity), point.offset, from.tuning};
}

constexpr auto kIsWeaker = [](const Point& a, const Point& b) { return a.intensity < b.intensity; };
constexpr auto kBefore = [](const Point& point, int32_t ms) { return point.ms < ms; };
constexpr auto kAfter = [](int32_t ms, const Point& point) { return ms < point.ms; };

// What a line comes to at a time, and what it goes on with from there, which differ where it has a step.
Point before(const Line& line, int32_t ms) {
  const auto to = std::lower_bound(line.begin(), line.end(), ms, kBefore);
  if (to == line.end()) return line.back();
  return to == line.begin() || to->ms == ms ? *to : between(to[-1], *to, ms);
}
Point behind(const Line& line, int32_t ms) {
  const auto to = std::upper_bound(line.begin(), line.end(), ms, kAfter);
  if (to == line.begin()) return line.front();
  return to == line.end() || to[-1].ms == ms ? to[-1] : between(to[-1], *to, ms);
}

// The part of a line between two times of it.
Line clipped(const Line& line, int32_t from_ms, int32_t to_ms) {
  Line part = {behind(line, from_ms)};
  part.insert(part.end(), std::upper_bound(line.begin(), line.end(), from_ms, kAfter),
              std::lower_bound(line.begin(), line.end(), to_ms, kBefore));
  part.push_back(before(line, to_ms));
  return part;
}

bool sounds(const Line& line) {
  return std::any_of(line.begin(), line.end(), [](const Point& point) { return point.sounds(); });
}

// Without the rest at either end.
Line trimmed(Line line) {
  const auto is_loud = [](const Point& point) { return point.sounds(); };
  const auto first = std::find_if(line.begin(), line.end(), is_loud);
  if (first == line.end()) return {};
  const auto last = std::find_if(line.rbegin(), line.rend(), is_loud).base() - 1;
  const bool rises = first != line.begin() && first[-1].ms < first->ms;
  const bool falls = last + 1 != line.end() && last[1].ms > last->ms;
  return {first - (rises ? 1 : 0), last + (falls ? 2 : 1)};
}

// The curves in ascending start; one that starts where another ends goes on with it.
std::vector<Line> lines_of(const Drawing& drawing) {
  std::vector<Line> lines;
  for (const DrawnCurve& curve : drawing.curves) {
    Line& line = lines.emplace_back();
    for (const DrawnPoint& point : curve)
      line.push_back({whole_ms(point.ms), point.intensity, point.offset, drawing.tuning});
    line = trimmed(std::move(line));
    if (line.empty() || line.front().ms == line.back().ms) lines.pop_back();
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.front().ms < b.front().ms; });
  std::vector<Line> joined;
  for (Line& line : lines) {
    if (!joined.empty() && joined.back().back().ms == line.front().ms) {
      joined.back().insert(joined.back().end(), line.begin(), line.end());
    } else {
      joined.push_back(std::move(line));
    }
  }
  return joined;
}

// Up to four digits behind the point, of something between 0 and 1.
std::string share_text(double share) {
  constexpr double kSteps = 10'000;
  return text("%.4g", std::round(std::clamp(share, 0.0, 1.0) * kSteps) / kSteps);
}

class Writer {
 public:
  Writer(const Drawing& drawing, Losses& losses) : losses_(losses), lines_(lines_of(drawing)) {
    for (const DrawnTap& tap : drawing.taps) taps_.push_back({whole_ms(tap.ms), tap.strength, tap.level});
    std::stable_sort(taps_.begin(), taps_.end(), [](const Tap& a, const Tap& b) { return a.ms < b.ms; });
  }

  std::string write() {
    size_t next = 0;
    const auto add_taps_before = [&](int32_t ms, const Line* around) {
      for (; next < taps_.size() && taps_[next].ms < ms; ++next) {
        if (around != nullptr) add_piece(*around, taps_[next].ms, taps_[next].ms);
        add_tap(taps_[next]);
      }
    };
    for (size_t i = 0; i < lines_.size(); ++i) {
      const Line& line = lines_[i];
      add_taps_before(line.front().ms, nullptr);
      add_taps_before(line.back().ms, &line);
      const int32_t line_ms = i + 1 < lines_.size() ? lines_[i + 1].front().ms : kLongestMs;
      add_piece(line, line.back().ms, next < taps_.size() ? std::min(taps_[next].ms, line_ms) : line_ms);
      losses_.add("curve", "cut where taps stand", is_cut(line) ? 1 : 0);
    }
    add_taps_before(kLongestMs + 1, nullptr);
    if (xml_.empty()) xml_ = kEmptyEffect;
    return "<vibration-effect>\n" + xml_ + "</vibration-effect>\n";
  }

 private:
  struct Tap {
    int32_t ms;
    double strength;
    double level;
  };

  // Whether taps take of what sounds of it.
  bool is_cut(const Line& line) const {
    const int32_t first_ms = line.front().ms - kTapMs + 1;
    auto tap =
        std::lower_bound(taps_.begin(), taps_.end(), first_ms, [](const Tap& t, int32_t ms) { return t.ms < ms; });
    for (; tap != taps_.end() && tap->ms < line.back().ms; ++tap) {
      const int32_t from_ms = std::max(tap->ms, line.front().ms);
      if (sounds(clipped(line, from_ms, std::min(tap->ms + kTapMs, line.back().ms)))) return true;
    }
    return false;
  }

  void add_tap(const Tap& tap) {
    const double off_tick = std::fabs(tap.level - kTick.level);
    const double off_low_tick = std::fabs(tap.level - kLowTick.level);
    const Shape& tick = off_tick < off_low_tick ? kTick : kLowTick;
    const bool is_click =
        tap.strength > tick.strength || std::fabs(tap.level - kClick.level) <= std::min(off_tick, off_low_tick);
    const Shape& shape = is_click ? kClick : tick;
    const bool is_far = std::fabs(tap.level - shape.level) > kSameLevel;
    losses_.add("tap", "given the level of the nearest primitive", is_far ? 1 : 0);
    xml_ += text("  <primitive-effect name=\"%s\"", shape.name);
    const std::string scale = share_text(tap.strength / shape.strength);
    if (scale != "1") xml_ += " scale=\"" + scale + "\"";
    const int32_t delay_ms = tap.ms - (primitive_ms_ ? *primitive_ms_ : cursor_ms_);
    if (delay_ms > 0 || primitive_ms_) xml_ += text(" delayMs=\"%d\"", delay_ms);
    if (primitive_ms_) xml_ += text(" delayType=\"%s\"", kFromStart);
    xml_ += "/>\n";
    primitive_ms_ = tap.ms;
    cursor_ms_ = tap.ms + kTapMs;
  }

  // What sounds of a line up to a time, from where the effects so far have come to. Nothing else plays until it is no
  // longer free.
  void add_piece(const Line& line, int32_t to_ms, int32_t free_ms) {
    const int32_t from_ms = std::max(line.front().ms, cursor_ms_);
    if (from_ms >= to_ms) return;
    const Line piece = trimmed(clipped(line, from_ms, to_ms));
    if (piece.empty()) return;
    const int32_t start_ms = piece.front().ms - cursor_ms_ < kLeastApartMs ? cursor_ms_ : piece.front().ms;
    if (piece.back().ms - start_ms >= kShortestMs) {
      const bool starts_hard = piece.front().sounds() && (piece.front().ms > from_ms || from_ms == line.front().ms);
      const bool ends_hard = piece.back().sounds() && (piece.back().ms < to_ms || to_ms == line.back().ms);
      losses_.add("hard edge", text("softened, over %d ms or more", kLeastApartMs),
                  (starts_hard ? 1 : 0) + (ends_hard ? 1 : 0));
      add_envelopes(envelope_of(piece, start_ms));
    } else if (to_ms == line.back().ms && from_ms == line.front().ms && free_ms - start_ms >= kShortestMs) {
      losses_.add("short curve", text("stretched to %d ms", kShortestMs));
      Point top = *std::max_element(piece.begin(), piece.end(), kIsWeaker);
      top.ms = start_ms + kLeastApartMs;
      add_envelopes({{start_ms, 0, top.offset}, top, {start_ms + kShortestMs, 0, top.offset}});
    } else {
      losses_.add("piece", text("left out of curves, shorter than %d ms", kShortestMs));
    }
  }

  // From rest to rest, with points as far apart as the platform has them. Where a line has them closer than that, it is
  // left and met again as soon as may be.
  Line envelope_of(const Line& piece, int32_t start_ms) {
    const int32_t end_ms = piece.back().ms;
    const int32_t last_ms = end_ms - kLeastApartMs;  // of the points before the end
    Line points = {{start_ms, 0, piece.front().offset}};
    int64_t left_out = 0;
    size_t next = 0;
    Point peak = {};  // the strongest of those that are passed
    // Whether the line is left by going straight to a time.
    const auto pass_until = [&](int32_t ms) {
      bool is_left = false;
      for (; next < piece.size() && piece[next].ms < ms; ++next) {
        const bool is_there = piece[next].ms == points.back().ms && piece[next].intensity == points.back().intensity;
        if (is_there) continue;
        is_left = true;
        if (piece[next].ms > start_ms && kIsWeaker(peak, piece[next])) peak = piece[next];
        left_out += piece[next].ms > start_ms && piece[next].ms < end_ms ? 1 : 0;
      }
      return is_left;
    };
    for (;;) {
      const int32_t earliest_ms = points.back().ms + kLeastApartMs;
      peak = {};
      const bool is_left = pass_until(earliest_ms);
      if (is_left && earliest_ms <= last_ms && kIsWeaker(points.back(), peak) &&
          kIsWeaker(behind(piece, earliest_ms), peak)) {
        points.push_back({earliest_ms, peak.intensity, peak.offset, peak.tuning});
        continue;
      }
      const int32_t next_ms = next < piece.size() ? piece[next].ms : end_ms;
      const bool is_soon = next_ms <= last_ms && next_ms < earliest_ms + kLeastApartMs;
      if (is_left && !is_soon && earliest_ms <= last_ms) {
        points.push_back(behind(piece, earliest_ms));
      } else if (next_ms <= last_ms) {
        points.push_back(piece[next++]);
      } else {
        break;
      }
    }
    const bool is_left = pass_until(end_ms) || piece.back().sounds();
    if (is_left && points.back().ms + kLeastApartMs <= last_ms) points.push_back(before(piece, last_ms));
    points.push_back({end_ms, 0, piece.back().offset});
    losses_.add("point", text("moved or left out, nearer than %d ms to others", kLeastApartMs), left_out);
    return points;
  }

  // As many effects as the points need, with the rest before them. They part where the line rests, or else where it is
  // weakest.
  void add_envelopes(Line points) {
    if (points.front().ms > cursor_ms_) points.insert(points.begin(), {cursor_ms_, 0, points.front().offset});
    cursor_ms_ = points.back().ms;
    primitive_ms_.reset();
    Line effect = {points.front()};
    size_t next = 1;
    while (effect.size() + (points.size() - next) > 1 + kMostPoints) {
      const auto first = points.begin() + static_cast<ptrdiff_t>(next);
      const auto end = first + static_cast<ptrdiff_t>(1 + kMostPoints - effect.size());
      const auto rest = std::find_if(std::reverse_iterator(end), std::reverse_iterator(first),
                                     [](const Point& point) { return !point.sounds(); });
      const bool has_rest = rest.base() != first;
      // Room is left for a point more before it.
      const auto parting = has_rest ? rest.base() - 1 : std::min_element(first + (end - first) / 2, end - 1, kIsWeaker);
      effect.insert(effect.end(), first, parting);
      const Point rests = {parting->ms, 0, parting->offset};
      if (!has_rest) add_halfway(effect, parting[-1], *parting, parting->ms - kLeastApartMs);
      effect.push_back(rests);
      add_envelope(effect);
      effect = {rests};
      if (!has_rest) add_halfway(effect, *parting, parting[1], parting->ms + kLeastApartMs);
      losses_.add("pause", text("put into curves of more than %zu points", kMostPoints), has_rest ? 0 : 1);
      next = static_cast<size_t>(parting - points.begin()) + 1;
    }
    effect.insert(effect.end(), points.begin() + static_cast<ptrdiff_t>(next), points.end());
    add_envelope(effect);
  }

  // A point of the line between two others, where it is far enough from both.
  static void add_halfway(Line& effect, const Point& from, const Point& to, int32_t ms) {
    const bool has_room = ms - from.ms >= kLeastApartMs && to.ms - ms >= kLeastApartMs;
    if (has_room) effect.push_back(between(from, to, ms));
  }

  void add_envelope(const Line& points) {
    const auto sharpness = [](const Point& point) { return share_text(sharpness_of_offset(point.offset)); };
    xml_ += "  <basic-envelope-effect initialSharpness=\"" + sharpness(points.front()) + "\">\n";
    for (size_t i = 1; i < points.size(); ++i) {
      xml_ += "    <control-point intensity=\"" + share_text(points[i].intensity / 100) + "\" sharpness=\"" +
              sharpness(points[i]) + text("\" durationMs=\"%d\"/>\n", points[i].ms - points[i - 1].ms);
    }
    xml_ += "  </basic-envelope-effect>\n";
  }

  Losses& losses_;
  std::vector<Line> lines_;
  std::vector<Tap> taps_;
  std::string xml_;
  int32_t cursor_ms_ = 0;                // where the next effect starts
  std::optional<int32_t> primitive_ms_;  // where the primitive just before it started
};

}  // namespace

bool is_android(const XmlElement& root) { return is_effect(root) || root.name == kSelection; }

void read_android(const XmlElement& root, Drawing& drawing) { Reader(drawing).read(root); }

std::string write_android(const Drawing& drawing, Losses& losses) { return Writer(drawing, losses).write(); }

}  // namespace design
