// SPDX-License-Identifier: Apache-2.0
// A pattern from its JSON, with every fault and its place.
#include "design/pattern/file.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>

#include "design/base/motor.h"
#include "design/base/text.h"
#include "design/pattern/entry.h"
#include "design/pattern/time.h"

namespace design {
namespace {

using JsonKind = JsonValue::Kind;
using Words = std::vector<std::string>;
using Report = std::function<void(Place place, std::string what)>;

constexpr Field<Tap> kIntensity = {"intensity", &Tap::intensity, 0, 100};
constexpr Field<Tap> kDriven = {"driven", &Tap::driven, 0, 100};
constexpr Field<Tap> kFelt = {"intensity", &Tap::felt, 0, 100};
constexpr Field<Tap> kLevel = {"level", &Tap::level, 0, 100};
constexpr int32_t kFarMs = 10 * kLongestMs;
constexpr Field<Vibration> kRecordDuration = {"duration", &Vibration::duration_ms, 1, kLongestMs};
constexpr Field<lrasynth_point> kFarTime = {"time", &lrasynth_point::ms, 0, kFarMs};
constexpr Field<lrasynth_point> kFarIntensity = {"intensity", &lrasynth_point::intensity, -1000, 1000};
constexpr Field<lrasynth_point> kOffset = {"offset", &lrasynth_point::offset, -50, 50};
constexpr Field<CurvePoint> kPointIntensity = {"intensity", &CurvePoint::intensity, 0, 100};
constexpr Field<CurvePoint> kPointOffset = {"offset", &CurvePoint::offset, -50, 50};
constexpr Field<CurvePoint> kHz = {"hz", &CurvePoint::asked_hz, 1, 1000};
constexpr Field<Entry> kRepeat = {"repeat", &Entry::repeat, 1, static_cast<int32_t>(kMostEvents)};
constexpr Field<Entry> kGain = {"gain", &Entry::gain, 0, 1000};

constexpr const char* kGroupType = "group";
constexpr const char* kFeltName = "felt";

// Members of the same name, and those that nobody knows.
void report_names(const JsonValue& object, const Words& known, const char* of_what, const Report& report) {
  std::set<std::string_view> seen;
  for (size_t i = 0; i < object.names.size(); ++i) {
    const std::string& name = object.names[i];
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      report(object.name_places[i], shown(name) + ": is no field of " + of_what + did_you_mean(name, known));
    } else if (!seen.insert(name).second) {
      report(object.name_places[i], shown(name) + ": stands there twice");
    }
  }
}

int32_t whole_in(int32_t least, int32_t most, const std::string& name, const JsonValue& value, const Report& report) {
  const auto whole = value.kind == JsonKind::kNumber ? whole_number(value.written) : std::nullopt;
  if (whole && *whole >= least && *whole <= most) return *whole;
  report(value.place, name + ": " + range_fault(least, most, named(value)));
  return least;
}

std::string string_of(const std::string& name, const JsonValue& value, const Report& report) {
  if (value.kind != JsonKind::kString) report(value.place, name + ": must be a text, not " + named(value));
  return value.string;
}

bool truth_in(const std::string& name, const JsonValue& value, const Report& report) {
  if (value.kind != JsonKind::kBoolean) report(value.place, name + ": must be true or false, not " + named(value));
  return value.written == "true";
}

double time_in(const std::string& name, const JsonValue& value, double tempo, const Report& report,
               int32_t least_ms = 0) {
  Time time = time_of(value, tempo, least_ms);
  if (!time.fault.empty()) report(value.place, name + ": " + time.fault);
  return time.ms;
}

// Reads one entry and notes its faults.
class EntryReader {
 public:
  struct Kind {
    std::string_view type;
    const char* name;
    void (EntryReader::*read)();
  };

  // Felt: what it stands in has intensities that are to be felt.
  EntryReader(const JsonValue& json, const EventName& name, size_t depth, double tempo, bool felt, Faults& faults)
      : json_(json), name_(name), depth_(depth), tempo_(tempo), is_felt_(felt), faults_(faults) {
    entry_.json = &json;
  }

  Entry read(int32_t number) {
    entry_.number = number;
    if (json_.kind != JsonKind::kObject) {
      fault(json_.place, "must be an object, not " + named(json_));
    } else if (const JsonValue* const type = member("type"); type != nullptr && !read_kind(type->string)) {
      Words types;
      for (const Kind& kind : kKinds) types.emplace_back(kind.type);
      fault(type->place,
            "type: must be " + listed(types) + ", not " + named(*type) + did_you_mean(type->string, types));
    }
    return std::move(entry_);
  }

 private:
  static const Kind kKinds[5];

  void fault(Place place, std::string what) { faults_.add({name_, place, std::move(what)}); }

  const JsonValue* member(const char* name) {
    const JsonValue* const value = json_.member(name);
    if (value == nullptr) fault(json_.place, text("%s: is missing", name));
    known_.emplace_back(name);
    return value;
  }

  const JsonValue* optional_member(const char* name) {
    known_.emplace_back(name);
    return json_.member(name);
  }

  bool read_kind(std::string_view type) {
    for (const Kind& kind : kKinds) {
      if (kind.type != type) continue;
      if (const JsonValue* const start = member("start")) entry_.start_ms = time("start", *start);
      if (const JsonValue* const felt = optional_member(kFeltName)) is_felt_ = truth_in(kFeltName, *felt, report_);
      (this->*kind.read)();
      if (const JsonValue* const note = optional_member("note")) string_of("note", *note, report_);
      report_names(json_, known_, kind.name, report_);
      return true;
    }
    return false;
  }

  template <class Owner>
  void read_field(Owner& owner, const Field<Owner>& field) {
    if (const JsonValue* const value = member(field.name)) owner.*field.value = whole(field, field.name, *value);
  }

  template <class Owner>
  int32_t whole(const Field<Owner>& field, const std::string& name, const JsonValue& value) {
    return whole_in(field.least, field.most, name, value, report_);
  }

  double time(const std::string& name, const JsonValue& value, int32_t least_ms = 0) {
    return time_in(name, value, tempo_, report_, least_ms);
  }

  void read_tap() {
    Tap tap;
    const bool is_driven = json_.member(kDriven.name) != nullptr;
    if (is_driven && json_.member(kIntensity.name) != nullptr) {
      fault(json_.member(kDriven.name)->place, "driven: stands in place of the intensity, not beside it");
      known_.emplace_back(kIntensity.name);
    }
    if (is_driven && json_.member(kFeltName) != nullptr && is_felt_) {
      fault(json_.member(kFeltName)->place, "felt: says nothing of what is driven");
    }
    read_field(tap, is_driven ? kDriven : is_felt_ ? kFelt : kIntensity);
    known_.emplace_back(kDriven.name);
    read_field(tap, kLevel);
    entry_.kind = tap;
  }

  // Its envelope is the record's own.
  void refuse_felt() {
    if (!is_felt_) return;
    const JsonValue* const felt = json_.member(kFeltName);
    fault(felt == nullptr ? json_.place : felt->place, "felt: is nothing that a record can be; take a curve");
  }

  void read_vibration() {
    refuse_felt();
    const JsonValue* const duration = member("duration");
    const double duration_ms = duration == nullptr ? 0 : time("duration", *duration, 1);
    Vibration vibration;
    read_four(vibration, [&](size_t i, const JsonValue& json, const std::string& name) {
      CurvePoint point;
      read_triple(point, json, name);
      vibration.points[i] = {0, point.intensity, point.offset};
    });
    entry_.kind = vibration;
    if (entry_.times_ms.size() < vibration.points.size()) return;
    const double span_ms = entry_.times_ms.back() - entry_.times_ms.front();
    if (duration_ms == 0 || std::fabs(span_ms - duration_ms) < 1e-6) return;
    fault(json_.member("points")->place,
          text("points: times must span the duration, %.10g ms, not %.10g ms", duration_ms, span_ms));
  }

  void read_record() {
    refuse_felt();
    Vibration record = {.is_record = true};
    read_field(record, kRecordDuration);
    read_four(record, [&](size_t i, const JsonValue& json, const std::string& name) {
      const Field<lrasynth_point> fields[] = {kFarTime, kFarIntensity, kOffset};
      if (!is_triple(json, name)) return;
      for (size_t j = 0; j < std::size(fields); ++j) {
        record.points[i].*fields[j].value = whole(fields[j], name + ", " + fields[j].name, json.items[j]);
      }
      entry_.times_ms.push_back(record.points[i].ms);
    });
    entry_.kind = record;
  }

  template <class Read>
  void read_four(const Vibration& vibration, Read read_point) {
    const JsonValue* const points = member("points");
    if (points == nullptr) return;
    if (points->kind != JsonKind::kList || points->items.size() != vibration.points.size()) {
      return fault(points->place, "points: must be a list of four");
    }
    read_points(*points, read_point);
  }

  template <class Read>
  void read_points(const JsonValue& points, Read read_point) {
    const size_t faults_before = faults_.count;
    for (size_t i = 0; i < points.items.size(); ++i) read_point(i, points.items[i], text("point %zu", i + 1));
    if (faults_.count > faults_before) return entry_.times_ms.clear();
    for (size_t i = 1; i < entry_.times_ms.size(); ++i) {
      const double before_ms = entry_.times_ms[i - 1];
      if (entry_.times_ms[i] >= before_ms) continue;
      const JsonValue& point = points.items[i];
      const JsonValue* const time = point.kind == JsonKind::kList ? &point.items[0] : point.member("time");
      fault(time->place, text("point %zu, time: must be at least %.10g, the time of point %zu, not %.10g", i + 1,
                              before_ms, i, entry_.times_ms[i]));
    }
  }

  bool is_triple(const JsonValue& json, const std::string& name) {
    if (json.kind == JsonKind::kList && json.items.size() == 3) return true;
    fault(json.place, name + ": must be [time, intensity, offset]");
    return false;
  }

  void read_triple(CurvePoint& point, const JsonValue& json, const std::string& name) {
    if (!is_triple(json, name)) return;
    entry_.times_ms.push_back(time(name + ", time", json.items[0]));
    point.intensity = whole(kPointIntensity, name + ", intensity", json.items[1]);
    point.offset = whole(kPointOffset, name + ", offset", json.items[2]);
  }

  void read_curve() {
    Curve curve = {.is_felt = is_felt_};
    if (const JsonValue* const points = member("points")) {
      if (points->kind != JsonKind::kList || points->items.size() < 2) {
        fault(points->place, "points: must be a list of two or more");
      } else {
        read_points(*points, [&](size_t, const JsonValue& json, const std::string& name) {
          CurvePoint& point = curve.points.emplace_back();
          json.kind == JsonKind::kObject ? read_object(point, json, name) : read_triple(point, json, name);
        });
      }
    }
    entry_.kind = curve;
  }

  // A point with its hertz, or its offset by its name.
  void read_object(CurvePoint& point, const JsonValue& json, const std::string& name) {
    const bool has_hz = json.member(kHz.name) != nullptr;
    const Words known = {"time", "intensity", has_hz ? kHz.name : kPointOffset.name};
    const auto value = [&](size_t i) { return json.member(known[i]); };
    for (size_t i = 0; i < known.size(); ++i) {
      if (value(i) == nullptr) fault(json.place, name + ", " + known[i] + ": is missing");
    }
    report_names(json, known, "a point",
                 [&](Place place, const std::string& what) { fault(place, name + ", " + what); });
    if (value(0) != nullptr) entry_.times_ms.push_back(time(name + ", time", *value(0)));
    if (value(1) != nullptr) point.intensity = whole(kPointIntensity, name + ", intensity", *value(1));
    const Field<CurvePoint>& pitch = has_hz ? kHz : kPointOffset;
    if (value(2) != nullptr) point.*pitch.value = whole(pitch, name + ", " + pitch.name, *value(2));
  }

  void read_group() {
    if (const JsonValue* const repeat = optional_member(kRepeat.name)) {
      entry_.repeat = whole(kRepeat, kRepeat.name, *repeat);
    }
    if (const JsonValue* const every = optional_member("every")) {
      entry_.every_ms = time("every", *every, 1);
    } else if (entry_.repeat > 1) {
      fault(json_.place, "every: is missing, how far its repetitions are apart");
    }
    if (const JsonValue* const gain = optional_member(kGain.name)) entry_.gain = whole(kGain, kGain.name, *gain);
    const JsonValue* const events = member("events");
    if (events == nullptr) return;
    if (events->kind != JsonKind::kList || events->items.empty()) {
      return fault(events->place, "events: must be a list of at least one");
    }
    if (depth_ == kDeepestGroup) {
      return fault(json_.place, text("stands too deep: groups may be %zu deep", kDeepestGroup));
    }
    int32_t number = 0;
    for (const JsonValue& json : events->items) {
      const EventName name = {name_.entry, name_.inside + text(".%d", ++number)};
      entry_.entries.push_back(EntryReader(json, name, depth_ + 1, tempo_, is_felt_, faults_).read(number));
    }
  }

  const JsonValue& json_;
  EventName name_;
  size_t depth_;
  double tempo_;
  bool is_felt_;
  Faults& faults_;
  Entry entry_;
  Words known_ = {"type"};
  Report report_ = [this](Place place, std::string what) { fault(place, std::move(what)); };
};

const EntryReader::Kind EntryReader::kKinds[] = {
    {Tap::kType, Tap::kName, &EntryReader::read_tap},
    {Vibration::kType, Vibration::kName, &EntryReader::read_vibration},
    {Vibration::kRecordType, Vibration::kRecordName, &EntryReader::read_record},
    {Curve::kType, Curve::kName, &EntryReader::read_curve},
    {kGroupType, "a group", &EntryReader::read_group}};

// Reads a whole file.
class FileReader {
 public:
  FileReader(const JsonValue& root, PatternFile& file) : root_(root), file_(file) {}

  void read() {
    read_setup();
    report_names(root_, known_, "a pattern", report_);
    const JsonValue* const events = root_.member("events");
    if (events == nullptr || events->kind != JsonKind::kList) {
      const Place place = events == nullptr ? root_.place : events->place;
      return report_(place, "must be an object with events, a list");
    }
    std::vector<Entry> entries;
    int32_t number = 0;
    for (const JsonValue& json : events->items) {
      const size_t faults_before = file_.faults.count;
      Entry entry = EntryReader(json, {number + 1}, 0, tempo_, is_felt_, file_.faults).read(number + 1);
      ++number;
      if (file_.faults.count == faults_before) entries.push_back(std::move(entry));
    }
    file_.events = laid_out(std::move(entries), is_flat_, file_.faults, file_.notes);
  }

 private:
  void read_setup() {
    const auto whole = [&](const char* name, int32_t least, int32_t most) {
      const JsonValue* const value = member(name);
      return value == nullptr ? std::nullopt : std::optional(whole_in(least, most, name, *value, report_));
    };
    const auto time = [&](const char* name) {
      const JsonValue* const value = member(name);
      return value == nullptr
                 ? std::nullopt
                 : std::optional(static_cast<int32_t>(std::lround(time_in(name, *value, tempo_, report_))));
    };
    const auto string = [&](const char* name) {
      const JsonValue* const value = member(name);
      return value == nullptr ? "" : string_of(name, *value, report_);
    };
    read_tempo();
    read_version();
    file_.name = string("name");
    file_.note = string("note");
    read_motor();
    file_.setup.chip = whole("chip", 0, std::numeric_limits<int32_t>::max());
    if (const auto boost = truth("boost")) file_.setup.boost = *boost ? 1 : 0;
    file_.setup.loops = whole("loops", 1, kMostLoops);
    file_.setup.interval_ms = time("interval");
    file_.setup.limit_ms = time("limit");
    is_flat_ = truth("flat").value_or(false);
    is_felt_ = truth(kFeltName).value_or(false);
  }

  const JsonValue* member(const char* name) {
    known_.emplace_back(name);
    return root_.member(name);
  }

  std::optional<bool> truth(const char* name) {
    const JsonValue* const value = member(name);
    return value == nullptr ? std::nullopt : std::optional(truth_in(name, *value, report_));
  }

  void read_version() {
    const JsonValue* const version = member("version");
    if (version == nullptr || version->written == "1") return;
    report_(version->place, "version: must be 1, not " + named(*version));
  }

  void read_tempo() {
    constexpr double kSlowest = 1;
    constexpr double kFastest = 1000;
    const JsonValue* const tempo = member("tempo");
    if (tempo == nullptr) return;
    tempo_ = tempo->kind == JsonKind::kNumber ? tempo_of(root_) : 0;
    if (tempo_ >= kSlowest && tempo_ <= kFastest) return;
    report_(tempo->place, text("tempo: must be a number from %g to %g, not ", kSlowest, kFastest) + named(*tempo));
    tempo_ = kFastest;  // so that beats are no further faults
  }

  void read_motor() {
    const JsonValue* const motor = member("motor");
    if (motor == nullptr) return;
    const auto asked = motor->kind == JsonKind::kNumber ? whole_number(motor->written) : std::nullopt;
    Words words;
    for (const int32_t known : motors()) {
      if (asked == known) file_.setup.motor = known;
      words.push_back(text("%d", known));
    }
    if (!file_.setup.motor) report_(motor->place, "motor: must be " + listed(words) + ", not " + named(*motor));
  }

  const JsonValue& root_;
  PatternFile& file_;
  Words known_ = {"events"};
  double tempo_ = 0;  // beats a minute; 0: none
  bool is_flat_ = false;
  bool is_felt_ = false;
  Report report_ = [this](Place place, std::string what) { file_.faults.add({{}, place, std::move(what)}); };
};

}  // namespace

std::shared_ptr<const Source> source_of(std::string_view text) {
  if (text.size() > kLargestFile) {
    const std::string fault = design::text("must not be larger than %zu bytes", kLargestFile);
    return std::make_shared<Source>(Source{{}, {std::nullopt, {.what = fault}}});
  }
  const auto source = std::make_shared<Source>(Source{std::string(text), {}});
  source->json = read_json(source->text);
  return source;
}

PatternFile read_pattern(std::shared_ptr<const Source> source) {
  PatternFile file;
  file.source = std::move(source);
  if (file.source->json.root) {
    FileReader(*file.source->json.root, file).read();
  } else {
    file.faults.add(file.source->json.fault);
  }
  return file;
}

}  // namespace design
