// SPDX-License-Identifier: Apache-2.0
// The table of formats, and how a pattern of ours is drawn for them.
#include "design/formats/formats.h"

#include <algorithm>
#include <cmath>

#include "design/base/text.h"
#include "design/formats/ahap.h"
#include "design/formats/android.h"
#include "design/formats/haptic.h"
#include "design/formats/hjif.h"
#include "design/formats/on_off.h"
#include "design/waveform/stretch.h"

namespace design {
namespace {

// How a pattern is drawn.

DrawnCurve part_of(const DrawnCurve& curve, Span span, const Tuning& tuning) {
  DrawnCurve part;
  for (size_t i = 0; i < curve.size(); ++i) {
    const bool is_new = i > 0 && curve[i - 1].ms < curve[i].ms;
    for (const double edge : {span.from, span.to}) {
      if (is_new && edge > curve[i - 1].ms && edge < curve[i].ms)
        part.push_back(between(curve[i - 1], curve[i], edge, &tuning));
    }
    if (curve[i].ms >= span.from && curve[i].ms <= span.to) part.push_back(curve[i]);
  }
  return part;
}

DrawnCurve curve_of(const Curve& curve, int32_t start_ms) {
  DrawnCurve drawn;
  for (size_t i = 0; i < curve.points.size(); ++i) {
    const CurvePoint& point = curve.points[i];
    drawn.push_back({1.0 * start_ms + curve.point_ms(i), 1.0 * point.intensity, 1.0 * point.offset});
  }
  return drawn;
}

// Of what a record plays, which is not what its points say.
DrawnCurve curve_of_record(const Score& score, const Event& event, const Tuning& tuning) {
  constexpr double kStepMs = 5;
  DrawnCurve drawn;
  for (const Stretch& stretch : stretches_of(score.profile(), event)) {
    const auto add = [&](double ms) {
      const int32_t offset = tuning.nearest(std::fabs(stretch.hz_at(ms)));
      const double intensity = 100 * std::fabs(stretch.amplitude_at(ms)) / tuning.full(offset);
      drawn.push_back({event.start_ms + ms, std::min(100.0, intensity), 1.0 * offset});
    };
    for (double ms = stretch.span.from; ms < stretch.span.to; ms += kStepMs) add(ms);
    add(stretch.span.to);
  }
  return drawn.empty() ? drawn : simplified(drawn);
}

class Painter {
 public:
  Painter(const Score& score, const Tuning& tuning, Losses& losses) : score_(score), losses_(losses), tuning_(tuning) {
    once_.tuning = &tuning;
  }

  Drawing paint() {
    for (size_t i = 0; i < score_.events().size(); ++i) {
      const Event& event = score_.events()[i];
      event.tap() != nullptr ? add_tap(event) : add_curve(i, event);
    }
    const auto starts_before = [](const DrawnCurve& a, const DrawnCurve& b) { return a.front().ms < b.front().ms; };
    std::stable_sort(once_.curves.begin(), once_.curves.end(), starts_before);
    return repeated();
  }

 private:
  void add_tap(const Event& event) {
    const Tap& tap = *event.tap();
    const bool is_asked = tap.driven == Tap::kAsAsked;
    const int32_t driven = is_asked ? driven_intensity(score_.profile(), tap.level, tap.intensity) : tap.driven;
    if (driven == 0) return losses_.add("tap", "left out, being silent");
    once_.taps.push_back({1.0 * event.start_ms, std::min(100.0, 1.0 * driven), 1.0 * tap.level});
  }

  void add_curve(size_t i, const Event& event) {
    const bool is_curve = event.curve() != nullptr;
    const DrawnCurve whole =
        is_curve ? curve_of(*event.curve(), event.start_ms) : curve_of_record(score_, event, tuning_);
    if (!is_curve) losses_.add("record", "turned into curves");
    if (is_curve) note_hertz(*event.curve());
    const std::vector<Span>& parts = score_.heard_in_layer(i);
    const Span all = score_.span_of(i);
    const bool is_cut = parts.size() != 1 || parts[0].from != all.from || parts[0].to != all.to;
    if (is_cut) losses_.add("vibration", "cut where another plays over it");
    for (const Span& span : parts) {
      DrawnCurve part = is_cut ? part_of(whole, span, tuning_) : whole;
      if (part.size() > 1 && part.front().ms < part.back().ms) once_.curves.push_back(std::move(part));
    }
  }

  void note_hertz(const Curve& curve) {
    const auto is_moved = [&](const CurvePoint& point) {
      return point.asked_hz > 0 && std::fabs(tuning_.hertz(point.offset) - point.asked_hz) > near_hz(point.asked_hz);
    };
    losses_.add("point", "given the nearest hertz that the motor plays",
                std::count_if(curve.points.begin(), curve.points.end(), is_moved));
  }

  Drawing repeated() {
    const int32_t loops = score_.playback().loops;
    if (loops == 1) return std::move(once_);
    if (static_cast<size_t>(loops) * score_.events().size() > kMostEvents) {
      losses_.say(text("it plays once, not %d times", loops));
      return std::move(once_);
    }
    Drawing all = {.tuning = &tuning_};
    for (int32_t pass = 0; pass < loops; ++pass) {
      const double start_ms = score_.pass_start_ms(pass);
      for (DrawnTap tap : once_.taps) {
        tap.ms += start_ms;
        all.taps.push_back(tap);
      }
      for (DrawnCurve curve : once_.curves) {
        for (DrawnPoint& point : curve) point.ms += start_ms;
        all.curves.push_back(std::move(curve));
      }
    }
    return all;
  }

  const Score& score_;
  Losses& losses_;
  const Tuning& tuning_;
  Drawing once_;
};

// The rows of the table.

// Of a file, its events and groups.
bool has_words(const JsonValue& json) {
  if (json.member("name") != nullptr || json.member("note") != nullptr) return true;
  const JsonValue* const events = json.member("events");
  return events != nullptr && std::any_of(events->items.begin(), events->items.end(), has_words);
}

template <void (*read)(const JsonValue&, Drawing&)>
void untuned(const JsonValue& root, const Tuning&, Drawing& drawing) {
  read(root, drawing);
}

template <std::string (*write)(const Drawing&, Losses&)>
std::string painted(const Score& score, const Source& source, Losses& losses) {
  if (has_words(*source.json.root)) losses.say("its names and notes are left out");
  const Tuning tuning(score.profile());
  std::string written = write(Painter(score, tuning, losses).paint(), losses);
  if (written.size() > kLargestFile) losses.say(text("it is larger than can be read here, %zu bytes", kLargestFile));
  return written;
}

std::string handed_on(const Score& score, const Source& source, Losses& losses) {
  if (has_comments(source)) losses.say("its comments are not kept");
  return handed_on_json(source, score.profile());
}

// clang-format off
constexpr Format kFormats[] = {
    {"json", ".json", "patterns as the other commands take them",
     nullptr, nullptr, nullptr, nullptr, handed_on},
    {"ahap", ".ahap", "AHAP, Apple Haptic and Audio Pattern",
     is_ahap, untuned<read_ahap>, nullptr, nullptr, painted<write_ahap>},
    {"haptic", ".haptic", "haptic data model 1.0: envelopes and emphases",
     is_haptic, untuned<read_haptic>, nullptr, nullptr, painted<write_haptic>},
    {"hjif", ".hjif", "MPEG haptics (HJIF), which is only read, and in JSON alone",
     is_hjif, read_hjif, nullptr, nullptr, nullptr},
    {"xml", ".xml", "Android vibration effects",
     nullptr, nullptr, is_android, read_android, painted<write_android>},
    {"vibrate", ".vibrate.json", "times on and off for navigator.vibrate, which are only written",
     nullptr, nullptr, nullptr, nullptr, painted<write_on_off>},
};
// clang-format on

template <class Is>
const Format* format_where(Is is) {
  const Format* const found = std::find_if(std::begin(kFormats), std::end(kFormats), is);
  return found == std::end(kFormats) ? nullptr : found;
}

std::string_view without_mark(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

Drawing drawing_of(const XmlText& xml) {
  Drawing drawing;
  if (!xml.root) {
    drawing.faults.add(xml.fault);
    return drawing;
  }
  const auto is_of = [&](const Format& format) { return format.is_xml != nullptr && format.is_xml(*xml.root); };
  if (const Format* const format = format_where(is_of)) {
    format->read_xml(*xml.root, drawing);
  } else {
    drawing.fault(xml.root->place, shown(xml.root->name) + ": is no element that vibrates");
  }
  return drawing;
}

// Whether it begins as no text does.
bool is_binary(std::string_view bytes) {
  constexpr size_t kMost = 16;
  const auto is_odd = [](char c) { return static_cast<uint8_t>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r'; };
  const std::string_view first = bytes.substr(0, kMost);
  return std::any_of(first.begin(), first.end(), is_odd);
}

// Nothing where the text is no format's: it is ours, or nobody's.
std::optional<Drawing> drawing_of(const Source& source, const Tuning& tuning) {
  if (is_binary(source.text)) {
    Drawing none;
    none.fault({}, "is neither UTF-8 text nor sound that is known; of MPEG haptics JSON is read, not the binary form");
    return none;
  }
  if (without_mark(source.text).starts_with('<')) return drawing_of(read_xml(source.text));
  if (!source.json.root) return std::nullopt;
  const auto is_of = [&](const Format& format) {
    return format.is_json != nullptr && format.is_json(*source.json.root);
  };
  const Format* const format = format_where(is_of);
  if (format == nullptr) return std::nullopt;
  Drawing drawing;
  format->read_json(*source.json.root, tuning, drawing);
  return drawing;
}

}  // namespace

std::span<const Format> formats() { return kFormats; }

bool is_read(const Format& format) {
  return format.is_json != nullptr || format.is_xml != nullptr || &format == kFormats;
}

const Format* format_named(std::string_view name) {
  return format_where([&](const Format& format) { return format.name == name; });
}

// Of endings that both fit the longer one is meant.
const Format* format_of_path(std::string_view path) {
  std::string small(path);
  for (char& c : small) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  const Format* best = nullptr;
  for (const Format& format : kFormats) {
    const std::string_view ending = format.ending;
    const bool fits = format.write != nullptr && small.ends_with(ending);
    if (fits && (best == nullptr || ending.size() > std::string_view(best->ending).size())) best = &format;
  }
  return best;
}

std::vector<std::string> written_formats(const char* Format::*word) {
  std::vector<std::string> words;
  for (const Format& format : kFormats) {
    if (format.write != nullptr) words.emplace_back(format.*word);
  }
  return words;
}

std::string formats_help() {
  std::string lines = "FORMS, of which FILE has what it says, and OUTPUT what its name ends in:\n";
  for (const Format& format : kFormats) lines += text("  %-14s %s\n", format.ending, format.help);
  return lines;
}

PatternFile read_file(std::string_view text, const Tuning& tuning) {
  auto source = source_of(text);
  auto drawing = drawing_of(*source, tuning);
  return drawing ? file_of(std::move(*drawing)) : read_pattern(std::move(source));
}

PatternFile file_of(Drawing drawing) {
  PatternFile file;
  const std::string json = drawing.faults.count == 0 ? pattern_json(drawing) : "";
  if (drawing.faults.count > 0) {
    file.faults = std::move(drawing.faults);
    return file;
  }
  file = read_pattern(json);
  file.losses = drawing.losses.lines();
  if (file.events.empty()) file.notes.emplace_back("there is nothing in it but rest");
  // Those of a text that nobody has written.
  for (Event& event : file.events) event.place = {};
  for (Fault& fault : file.faults.listed) fault.place = {};
  return file;
}

}  // namespace design
