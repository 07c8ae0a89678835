// SPDX-License-Identifier: Apache-2.0
// The table of formats.
#include "design/formats/formats.h"

#include <algorithm>

#include "design/base/text.h"
#include "design/formats/ahap.h"
#include "design/formats/android.h"
#include "design/formats/haptic.h"
#include "design/formats/hjif.h"
#include "design/formats/on_off.h"
#include "design/formats/painter.h"

namespace design {
namespace {

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
std::string written(const Score& score, const Source& source, Losses& losses) {
  if (has_words(*source.json.root)) losses.say("its names and notes are left out");
  const Tuning tuning(score.profile());
  std::string content = write(painted(score, tuning, losses), losses);
  if (content.size() > kLargestFile) losses.say(text("it is larger than can be read here, %zu bytes", kLargestFile));
  return content;
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
     is_ahap, untuned<read_ahap>, nullptr, nullptr, written<write_ahap>},
    {"haptic", ".haptic", "haptic data model 1.0: envelopes and emphases",
     is_haptic, untuned<read_haptic>, nullptr, nullptr, written<write_haptic>},
    {"hjif", ".hjif", "MPEG haptics (HJIF), which is only read, and in JSON alone",
     is_hjif, read_hjif, nullptr, nullptr, nullptr},
    {"xml", ".xml", "Android vibration effects",
     nullptr, nullptr, is_android, read_android, written<write_android>},
    {"vibrate", ".vibrate.json", "times on and off for navigator.vibrate, which are only written",
     nullptr, nullptr, nullptr, nullptr, written<write_on_off>},
};
// clang-format on

template <class Is>
const Format* format_where(Is is) {
  const Format* const found = std::find_if(std::begin(kFormats), std::end(kFormats), is);
  return found == std::end(kFormats) ? nullptr : found;
}

std::string_view without_mark(std::string_view text) {
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

std::string felt_json(const Score& score, const Source& source, const Resonator& resonator, Losses& losses) {
  if (has_words(*source.json.root)) losses.say("its names and notes are left out");
  const lrasynth_profile& profile = score.profile();
  const Tuning tuning(profile);
  std::vector<Event> events = score.events();
  for (Event& event : events) {
    if (event.vibration() == nullptr) continue;
    losses.add("record", "turned into curves");
    Curve curve;
    for (const DrawnPoint& point : curve_of_record(profile, event, tuning)) {
      curve.points.push_back({static_cast<int32_t>(point.ms) - event.start_ms, static_cast<int32_t>(point.intensity),
                              static_cast<int32_t>(point.offset)});
    }
    event.kind = curve;
  }
  losses.add("strength", "kept to 100 %, of which more is felt", ask_as_felt(events, profile, resonator));
  std::string json = "{\"version\":1,";
  if (score.playback().loops > 1) json += text("\"loops\":%d,", score.playback().loops);
  if (score.playback().interval_ms > 0) json += text("\"interval\":%d,", score.playback().interval_ms);
  if (score.playback().limit_ms >= 0) json += text("\"limit\":%d,", score.playback().limit_ms);
  json += "\"events\": [";
  for (const Event& event : events) {
    json += (&event == events.data() ? "\n  {" : ",\n  {") + text("\"type\":\"%s\",", event.type()) +
            event.fields_json() + "}";
  }
  return json + "\n]}\n";
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
  if (file.events.empty()) file.notes.emplace_back("nothing of it becomes an event");
  // Those of a text that nobody has written.
  for (Event& event : file.events) event.place = {};
  for (Fault& fault : file.faults.listed) fault.place = {};
  return file;
}

}  // namespace design
