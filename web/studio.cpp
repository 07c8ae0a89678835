// SPDX-License-Identifier: Apache-2.0
// The page's side of design/: pieces by their numbers, asked for in text and buffers.
#include "studio.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "design/advice/summary.h"
#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/formats/formats.h"
#include "design/formats/sound.h"
#include "design/pattern/time.h"
#include "design/picture/forms.h"
#include "design/waveform/stretch.h"

namespace {

using design::quoted;
using design::text;

// The samples of a waveform, rendered once, a block at a time and not before somebody asks.
class Rendered {
 public:
  explicit Rendered(design::Waveform waveform)
      : waveform_(std::move(waveform)), codes_(size(waveform_.length)), has_(size(waveform_.length) / kBlock + 1) {}

  std::span<const uint8_t> codes(int64_t first, size_t count) {
    const size_t from = size(first);
    for (size_t block = from / kBlock; block * kBlock < from + count; ++block) {
      if (!has_[block]) render(block);
    }
    return std::span(codes_).subspan(from, count);
  }

 private:
  static constexpr size_t kBlock = 1U << 14U;
  static size_t size(int64_t samples) { return static_cast<size_t>(samples); }

  void render(size_t block) {
    const size_t first = block * kBlock;
    waveform_.read(static_cast<int64_t>(first),
                   std::span(codes_).subspan(first, std::min(kBlock, codes_.size() - first)));
    has_[block] = true;
  }

  design::Waveform waveform_;
  std::vector<uint8_t> codes_;
  std::vector<bool> has_;
};

class Held {
 public:
  explicit Held(design::Piece piece) : piece_(std::move(piece)), rendered_(piece_.waveform) {
    piece_.waveform.read = [this](int64_t first, std::span<uint8_t> window) {
      const auto codes = rendered_.codes(first, window.size());
      std::copy(codes.begin(), codes.end(), window.begin());
    };
  }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  const design::Piece& piece() const { return piece_; }
  int64_t length() const { return piece_.waveform.length; }
  std::span<const uint8_t> codes(int64_t first, int64_t count) {
    return rendered_.codes(first, static_cast<size_t>(count));
  }

  const design::Motion& motion(const design::Resonator& resonator) { return motion_.with(resonator, piece_.waveform); }
  const design::Felt& felt(const design::Resonator& resonator) { return felt_.with(resonator, piece_.waveform); }

 private:
  // What is estimated of a waveform, until it is asked for with another resonator.
  template <class Estimate>
  class Estimated {
   public:
    const Estimate& with(const design::Resonator& resonator, const design::Waveform& waveform) {
      const bool is_known = estimate_ && asked_.hz == resonator.hz && asked_.quality == resonator.quality;
      asked_ = resonator;
      return is_known ? *estimate_ : estimate_.emplace(waveform, resonator);
    }

   private:
    design::Resonator asked_ = {};
    std::optional<Estimate> estimate_;
  };

  design::Piece piece_;
  Rendered rendered_;
  Estimated<design::Motion> motion_;
  Estimated<design::Felt> felt_;
};

class Shelf {
 public:
  bool is_full() const { return held_.size() == kMost || last_ == std::numeric_limits<int>::max(); }

  int put(design::Piece piece) {
    held_.emplace(++last_, std::make_unique<Held>(std::move(piece)));
    return last_;
  }
  void release(int number) { held_.erase(number); }

  Held* at(int number) const {
    const auto found = held_.find(number);
    return found == held_.end() ? nullptr : found->second.get();
  }

 private:
  static constexpr size_t kMost = 16;

  std::map<int, std::unique_ptr<Held>> held_;
  int last_ = 0;
};

// Lives as long as the page, so that nothing needs to be torn down.
struct Studio {
  std::string text;
  Shelf shelf;
  std::optional<design::Listener> listener;
  std::vector<int8_t> extremes;
  std::vector<double> columns;
};

Studio& studio() {
  static Studio* const only = new Studio;
  return *only;
}

int refuse() {
  studio().text.clear();
  return -1;
}

bool is_in(double value, double least, double most) { return value >= least && value <= most; }  // NaN is not

constexpr double kMostColumns = 65536;
constexpr size_t kMostHeard = 65536;  // samples at once
constexpr double kFar = 1e12;         // in samples or ms

// JSON.

const char* truth(bool value) { return value ? "true" : "false"; }

template <class Items, class Write>
std::string list(const Items& items, Write write) {
  std::string words = "[";
  for (const auto& item : items) {
    if (words.size() > 1) words += ',';
    words += write(item);
  }
  return words + ']';
}

std::string json_of(design::Span span) { return text("[%.10g,%.10g]", span.from, span.to); }

std::string json_of(const design::Number& number) {
  return '[' + quoted(number.first) + ',' + quoted(number.second) + ']';
}

// What plays at so many points of time, in percent of full scale.
std::string strengths_of(const design::Stretch& sweep) {
  constexpr int kSteps = 8;
  std::vector<double> strengths;
  for (int i = 0; i <= kSteps; ++i) {
    const double ms = sweep.span.from + sweep.span.length() * i / kSteps;
    strengths.push_back(std::fabs(sweep.amplitude_at(ms)) * 100 / 128);
  }
  return list(strengths, [](double strength) { return text("%.4g", strength); });
}

// Of a record, of which no line tells what it is to be, also what plays.
std::string json_of(const design::Stretch& sweep, double start_ms, bool is_record) {
  return text(R"({"from_ms":%.10g,"to_ms":%.10g,"from_hz":%.10g,"to_hz":%.10g,"reached_hz":%.10g)",
              start_ms + sweep.span.from, start_ms + sweep.span.to, sweep.from_hz, sweep.to_hz, sweep.reached_hz()) +
         (is_record ? R"(,"strengths":)" + strengths_of(sweep) : "") + '}';
}

std::string json_of(const design::Warning& warning) {
  return text(R"({"event":%d,"ms":%.10g,"line":)", warning.event.entry, warning.at_ms) + quoted(line_of(warning)) + '}';
}

std::string json_of(const design::Section& section) {
  return text(R"({"from":%.10g,"to":%.10g,"label":)", section.span.from, section.span.to) + quoted(section.label) + '}';
}

template <class Items>
std::string list(const Items& items) {
  return list(items, [](const auto& item) { return json_of(item); });
}

// What stands in its file.
std::string fields_of(const design::Event& event) {
  return text(R"("number":%d,"inside":)", event.name.entry) + quoted(event.name.inside) +
         text(R"(,"type":"%s",)", event.type()) + event.fields_json();
}

// What becomes of it on this chip and motor.
std::string fate_of(const design::Score& score, size_t i) {
  const lrasynth_profile& profile = score.profile();
  const design::Event& event = score.events()[i];
  const bool is_stream = design::is_event_stream(profile);  // its length says nothing about time
  const design::Span span =
      is_stream ? design::Span{static_cast<double>(event.start_ms), event.end_ms(profile)} : score.span_of(i);
  const std::string when =
      text(R"(,"end_ms":%.10g,"heard":)", span.to) + list(is_stream ? std::vector{span} : score.heard(i));
  if (const design::Tap* const tap = event.tap()) {
    return text(R"(,"strength":%d)", design::driven_intensity(profile, tap->level, tap->intensity)) + when;
  }
  const auto hz = [](const design::Asked& point) { return text("%.10g", point.hz); };
  const auto asked_hz = [&](const design::CurvePoint& point) {
    return text("%d", design::hertz_at(profile, point.offset));
  };
  const design::Curve* const curve = event.curve();
  const bool is_record = event.vibration() != nullptr && event.vibration()->is_record;
  const auto sweep = [&](const design::Stretch& stretch) { return json_of(stretch, event.start_ms, is_record); };
  return R"(,"hz":)" + (curve != nullptr ? list(curve->points, asked_hz) : list(line_of(profile, event), hz)) +
         R"(,"sweeps":)" + list(stretches_of(profile, event), sweep) + when;
}

std::string json_of(const design::Faults& faults, const std::string& file) {
  return R"({"faults":)" + list(faults.lines(file), quoted) + R"(,"fault_events":)" +
         list(faults.listed, [](const design::Fault& fault) { return text("%d", fault.event.entry); });
}

// When each of a file's events starts, as far as that can be read.
std::vector<double> starts_of(const design::Source& source) {
  std::vector<double> starts;
  if (!source.json.root) return starts;
  const double tempo = design::tempo_of(*source.json.root);
  const design::JsonValue* const events = source.json.root->member("events");
  if (events == nullptr) return starts;
  for (const design::JsonValue& event : events->items) {
    const design::JsonValue* const start = event.member("start");
    starts.push_back(start == nullptr ? 0 : design::time_of(*start, tempo).ms);
  }
  return starts;
}

std::string json_of(const design::Setup& setup) {
  std::string fields;
  const auto add = [&](const char* name, const std::optional<int32_t>& value, bool is_truth = false) {
    if (!value) return;
    fields += (fields.empty() ? "" : ",") + quoted(name) + ':' + (is_truth ? truth(*value != 0) : text("%d", *value));
  };
  add("motor", setup.motor);
  add("chip", setup.chip);
  add("boost", setup.boost, true);
  add("loops", setup.loops);
  add("interval", setup.interval_ms);
  return '{' + fields + '}';
}

// What is told of a file, whether it plays or not.
std::string json_of(const design::PatternFile& file) {
  const bool has_comments = file.source != nullptr && design::has_comments(*file.source);
  const std::vector<double> starts = file.source == nullptr ? std::vector<double>() : starts_of(*file.source);
  return R"(,"said":)" + json_of(file.setup) + R"(,"starts":)" +
         list(starts, [](double ms) { return text("%.10g", ms); }) + R"(,"notes":)" + list(file.notes, quoted) +
         R"(,"losses":)" + list(file.losses, quoted) + R"(,"comments":)" + truth(has_comments);
}

std::string level_json(double level) {
  return text(R"(,"felt_db":%.10g,"felt_words":)", level) + quoted(design::level_words(level));
}

std::string json_of(const design::Piece& piece) {
  const design::Waveform& waveform = piece.waveform;
  const bool is_stream = piece.waveform.is_stream;
  const double length_ms = is_stream ? 0 : waveform.length_ms();
  const double pass_ms = is_stream || piece.score == nullptr ? length_ms : piece.score->pass_ms();
  std::string json = R"(,"title":)" + quoted(waveform.title);
  json +=
      text(R"(,"length":%lld,"rate":%d,"length_ms":%.10g,"pass_ms":%.10g,"stream":%s,"events":[)",
           static_cast<long long>(waveform.length), waveform.profile.sample_rate, length_ms, pass_ms, truth(is_stream));
  for (size_t i = 0; piece.score != nullptr && i < piece.score->events().size(); ++i) {
    json += (i == 0 ? "{" : ",{") + fields_of(piece.score->events()[i]) + fate_of(*piece.score, i);
    if (i < piece.levels.size() && piece.levels[i]) json += level_json(*piece.levels[i]);
    json += '}';
  }
  return json + R"(],"warnings":)" + list(piece.warnings) + R"(,"sections":)" +
         list(is_stream ? std::vector<design::Section>() : waveform.sections) + '}';
}

int take_faults(const design::PatternFile& file, const std::string& name) {
  studio().text = json_of(file.faults, name) + json_of(file) +
                  R"(,"title":"","length":0,"rate":0,"length_ms":0,"pass_ms":0,"stream":false,"events":)" +
                  list(file.events, [](const design::Event& event) { return '{' + fields_of(event) + '}'; }) +
                  R"(,"warnings":[],"sections":[]})";
  return 0;
}

int take_piece(design::Piece piece, const design::PatternFile& file = {}) {
  studio().text = json_of(design::Faults(), "") + json_of(file) + json_of(piece);
  return studio().shelf.put(std::move(piece));
}

std::optional<lrasynth_profile> profile_of(int motor, int chip, int boost) {
  const std::vector<int32_t> motors = design::motors();
  if (std::find(motors.begin(), motors.end(), motor) == motors.end()) return std::nullopt;
  if (!design::is_chip(chip)) return std::nullopt;
  return lrasynth_profile_of(chip, motor, boost != 0 ? 1 : 0);
}

// Hertz over the frequency offset.
std::string curve(const lrasynth_profile& profile) {
  std::vector<int32_t> offsets;
  for (int32_t offset = -50; offset <= 50; ++offset) offsets.push_back(offset);
  return list(offsets, [&](int32_t offset) { return text("%d", design::hertz_at(profile, offset)); });
}

std::string facts_of_chip(int32_t chip) {
  const lrasynth_profile profile = lrasynth_profile_of(chip, 0, 0);
  return text(R"({"chip":%d,"rate":%d,"stream":%s})", chip, profile.sample_rate,
              truth(design::is_event_stream(profile)));
}

std::string facts_of(int32_t motor) {
  const lrasynth_profile plain = lrasynth_profile_of(0, motor, 0);
  const lrasynth_profile boosted = lrasynth_profile_of(0, motor, 1);
  return text(R"({"motor":%d,"taps":%s,"boost":%s,"shares":%s,"resonance":%.10g,"hz":[)", motor,
              truth(design::has_taps(plain)), truth(design::has_boost(plain)), truth(design::has_shares(plain)),
              design::resonance_of(plain)) +
         curve(plain) + ',' + curve(boosted) + "]}";
}

std::string facts_of_format(const design::Format& format) {
  return R"({"name":)" + quoted(format.name) + R"(,"ending":)" + quoted(format.ending) + R"(,"help":)" +
         quoted(format.help) + R"(,"read":)" + truth(is_read(format)) + R"(,"written":)" +
         truth(format.write != nullptr) + '}';
}

std::string usual_sound() {
  const design::SoundOptions usual;
  return text(R"({"floor_db":%.10g,"gain_db":%.10g,"taps":%s,"curves":%s})", usual.floor_db, usual.gain_db,
              truth(usual.taps), truth(usual.curves));
}

// A form, of which the length is measured before it is kept where it is long: memory need not hold it twice.
template <class Write>
std::string collected(bool measure, Write write) {
  size_t length = 0;
  if (measure) write([&](std::string_view bytes) { return length += bytes.size(), true; });
  std::string all;
  all.reserve(length);
  write([&](std::string_view bytes) { return all += bytes, true; });
  return all;
}

// With a quality below 0 the response is left out of the picture, and what is felt is estimated with the motor's own.
std::optional<std::string> form_of(Held& held, std::string_view name, const design::Resonator& resonator,
                                   design::Span shown) {
  design::Piece piece = held.piece();
  const design::Form* const form = design::form_named(name);
  if (form == nullptr || !suits(*form, piece)) return std::nullopt;
  const bool has_response = resonator.quality >= 0;
  if (has_response) feel(piece, resonator);
  const design::View view = {.motion = has_response && name == "svg" ? &held.motion(resonator) : nullptr,
                             .resonator = has_response ? resonator : design::Resonator(),
                             .from_ms = shown.from,
                             .to_ms = shown.to};
  if (name == "svg" && !shown_span(piece, view)) return std::nullopt;
  return collected(form->in_blocks, [&](const design::Sink& sink) { form->write(piece, view, sink); });
}

bool is_resonator(double quality, double hz) { return (quality == 0 || is_in(quality, 1, 1000)) && is_in(hz, 0, 2000); }
bool is_time(double ms) { return is_in(ms, 0, 2.0 * design::kLongestMs); }

// The piece whose estimates are asked for soundly, null where that is none.
Held* estimable(int piece, const design::Resonator& resonator, design::Span shown, int columns) {
  const bool is_sound = is_resonator(resonator.quality, resonator.hz) && is_in(shown.from, -kFar, kFar) &&
                        is_in(shown.to, -kFar, kFar) && is_in(columns, 0, kMostColumns);
  Held* const held = studio().shelf.at(piece);
  return is_sound && held != nullptr && !held->piece().waveform.is_stream ? held : nullptr;
}

}  // namespace

void* studio_alloc(size_t size) { return std::malloc(size); }
void studio_free(void* memory) { std::free(memory); }

const char* studio_text() { return studio().text.data(); }
size_t studio_text_length() { return studio().text.size(); }

void studio_about() {
  studio().text = text(R"({"version":"%d.%d.%d","longest_ms":%d,"help":)", LRASYNTH_VERSION_MAJOR,
                       LRASYNTH_VERSION_MINOR, LRASYNTH_VERSION_PATCH, design::kLongestMs) +
                  quoted(design::kPatternHelp) + R"(,"chips":)" + list(design::chips(), facts_of_chip) +
                  R"(,"motors":)" + list(design::motors(), facts_of) + R"(,"formats":)" +
                  list(design::formats(), facts_of_format) + R"(,"sound":)" + usual_sound() +
                  text(R"(,"felt":{"hardly_db":%.10g,"fully_db":%.10g}})", design::kHardlyFelt, design::kFullyFelt);
}

int studio_pattern(const char* json, size_t length, const char* name, size_t name_length, int motor, int chip,
                   int boost, int loops, int interval_ms) {
  const auto profile = profile_of(motor, chip, boost);
  if (!profile || !is_in(loops, 1, 65535) || !is_in(interval_ms, 0, design::kLongestMs)) return refuse();
  if (studio().shelf.is_full()) return refuse();
  const design::Setup asked = {
      .motor = motor, .chip = chip, .boost = boost != 0 ? 1 : 0, .loops = loops, .interval_ms = interval_ms};
  const std::string called(name, name_length);
  auto [setup, file, piece] = design::read_piece(asked, {json, length}, called);
  return piece ? take_piece(std::move(*piece), file) : take_faults(file, design::shown(called, 120));
}

int studio_listen(double rate, double floor_db, double gain_db, int taps, int curves) {
  const bool is_sound = is_in(floor_db, design::kLeastFloorDb, design::kMostFloorDb) &&
                        is_in(gain_db, design::kLeastGainDb, design::kMostGainDb);
  if (!is_sound || (taps == 0 && curves == 0)) return refuse();
  studio().listener.emplace(
      rate, design::SoundOptions{.taps = taps != 0, .curves = curves != 0, .floor_db = floor_db, .gain_db = gain_db});
  return 0;
}

int studio_hear(const float* samples, size_t count) {
  std::optional<design::Listener>& listener = studio().listener;
  if (!listener || count > kMostHeard) return refuse();
  listener->hear({samples, count});
  return listener->wants_more() ? 1 : 0;
}

int studio_heard(const char* name, size_t name_length, int motor, int chip, int boost) {
  const auto profile = profile_of(motor, chip, boost);
  if (!profile || !studio().listener) return refuse();
  design::Drawing drawing = studio().listener->drawing(*profile);
  studio().listener.reset();
  const std::string json = drawing.faults.count == 0 ? design::pattern_json(drawing) : "";
  const bool is_heard = drawing.faults.count == 0;
  studio().text = R"({"faults":)" + list(drawing.faults.lines(design::shown({name, name_length}, 120)), quoted) +
                  R"(,"losses":)" + list(drawing.losses.lines(), quoted) + R"(,"json":)" +
                  quoted(is_heard ? json : "") + '}';
  return is_heard ? 1 : 0;
}

int studio_tap(int level, int intensity, int in_pattern, int motor, int chip) {
  const auto profile = profile_of(motor, chip, 1);
  if (!profile || !is_in(level, 0, 100) || !is_in(intensity, 0, 100) || studio().shelf.is_full()) return refuse();
  if (design::has_taps(*profile)) return take_piece(design::tap_piece(*profile, level, intensity, in_pattern != 0));
  design::PatternFile none;
  none.faults.add({{}, {}, design::tap_fault(*profile)});
  return take_faults(none, "tap");
}

void studio_release(int piece) { studio().shelf.release(piece); }

const uint8_t* studio_read(int piece, double first, double count) {
  Held* const held = studio().shelf.at(piece);
  if (held == nullptr) return nullptr;
  const int64_t length = held->length();
  if (!is_in(first, 0, static_cast<double>(length - 1)) || !(count >= 1)) return nullptr;
  const auto from = static_cast<int64_t>(first);
  const double most = std::min(count, static_cast<double>(length - from));
  return held->codes(from, static_cast<int64_t>(most)).data();
}

const int8_t* studio_extremes(int piece, double first, double count, int columns) {
  Held* const held = studio().shelf.at(piece);
  if (held == nullptr || !is_in(columns, 1, kMostColumns)) return nullptr;
  if (!is_in(first, -kFar, kFar) || !is_in(count, 1, kFar)) return nullptr;
  const int64_t length = held->length();
  std::vector<int8_t>& extremes = studio().extremes;
  extremes.clear();
  const auto edge = [&](int column) { return static_cast<int64_t>(std::floor(first + count * column / columns)); };
  for (int column = 0; column < columns; ++column) {
    const int64_t from = std::max<int64_t>(0, edge(column));
    const int64_t to = std::min(length, std::max(edge(column) + 1, edge(column + 1)));
    int8_t low = 127;
    int8_t high = -128;
    if (from < to) {
      for (const uint8_t code : held->codes(from, to - from)) {
        low = std::min(low, static_cast<int8_t>(code));
        high = std::max(high, static_cast<int8_t>(code));
      }
    }
    extremes.push_back(low);
    extremes.push_back(high);
  }
  return extremes.data();
}

const double* studio_response(int piece, double quality, double hz, double from_ms, double to_ms, int columns) {
  const design::Resonator resonator = {.hz = hz, .quality = quality};
  Held* const held = estimable(piece, resonator, {from_ms, to_ms}, columns);
  if (held == nullptr) {
    refuse();
    return nullptr;
  }
  const design::Motion& motion = held->motion(resonator);
  const design::Response& response = motion.response();
  studio().text = text(R"({"peak":%.10g,"numbers":)", response.peak) +
                  list(numbers_of(response, held->piece().score == nullptr)) + '}';
  std::vector<double>& pairs = studio().columns;
  pairs.clear();
  for (const auto& [low, high] : motion.columns({from_ms, to_ms}, static_cast<size_t>(columns))) {
    pairs.push_back(low);
    pairs.push_back(high);
  }
  return columns == 0 ? nullptr : pairs.data();
}

const double* studio_felt(int piece, double quality, double hz, double from_ms, double to_ms, int columns) {
  const design::Resonator resonator = {.hz = hz, .quality = quality};
  Held* const held = estimable(piece, resonator, {from_ms, to_ms}, columns);
  if (held == nullptr) {
    refuse();
    return nullptr;
  }
  const design::Felt& felt = held->felt(resonator);
  const double strongest = felt.strongest();
  studio().text = text(R"({"strongest":%.10g,"percent":%.10g,"felt_ms":%.10g,"with":)", strongest,
                       design::percent_felt(strongest), felt.felt_ms()) +
                  quoted(words_of(felt.resonator())) + R"(,"numbers":)" + list(numbers_of(felt)) + '}';
  studio().columns = felt.columns({from_ms, to_ms}, static_cast<size_t>(columns));
  return columns == 0 ? nullptr : studio().columns.data();
}

int studio_form(int piece, const char* form, size_t length, double quality, double hz, double from_ms, double to_ms) {
  Held* const held = studio().shelf.at(piece);
  const bool is_sound = (quality == -1 || is_resonator(quality, hz)) && is_time(from_ms) && is_time(to_ms);
  if (!is_sound || held == nullptr) return refuse();
  auto made = form_of(*held, {form, length}, {.hz = hz, .quality = quality}, {from_ms, to_ms});
  if (!made) return refuse();
  studio().text = std::move(*made);
  return static_cast<int>(studio().text.size());
}

int studio_convert(int piece, const char* format, size_t length) {
  const Held* const held = studio().shelf.at(piece);
  const design::Format* const into = design::format_named({format, length});
  if (held == nullptr || into == nullptr || into->write == nullptr) return refuse();
  const design::Piece& pattern = held->piece();
  if (pattern.score == nullptr || pattern.waveform.is_stream) return refuse();
  design::Losses losses;
  const std::string content = into->write(*pattern.score, *pattern.source, losses);
  studio().text = R"({"content":)" + quoted(content) + R"(,"losses":)" + list(losses.lines(), quoted) + '}';
  return static_cast<int>(studio().text.size());
}
