// SPDX-License-Identifier: Apache-2.0
// Groups laid out in time.
#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "design/base/text.h"
#include "design/pattern/entry.h"
#include "design/pattern/file.h"

namespace design {
namespace {

int32_t rounded(double ms) { return static_cast<int32_t>(std::lround(ms)); }

// What the events of a group, or of one repetition of it, have in common.
struct Frame {
  double start_ms = 0;
  double gain = 1;          // a product of percents,
  double full_gain = 1;     // of this
  int32_t entry = 0;        // 0: they stand in no group
  std::string path = {};    // behind that, ".2"
  std::string passes = {};  // "4"

  // The frame of an entry in it.
  Frame of(const Entry& inner) const {
    Frame frame = *this;
    frame.start_ms += inner.start_ms;
    entry == 0 ? void(frame.entry = inner.number) : void(frame.path += text(".%d", inner.number));
    return frame;
  }

  Frame repeated(const Entry& group, int32_t pass) const {
    Frame frame = *this;
    frame.start_ms += pass * group.every_ms;
    frame.gain *= group.gain;
    frame.full_gain *= 100;
    if (group.repeat > 1) frame.passes += text(passes.empty() ? "%d" : ".%d", pass + 1);
    return frame;
  }

  EventName name() const { return {entry, path + (passes.empty() ? "" : ", pass " + passes)}; }
};

class Layout {
 public:
  explicit Layout(Faults& faults) : faults_(faults) {}

  void lay_out(const std::vector<Entry>& entries, const Frame& frame) {
    for (const Entry& entry : entries) {
      const Frame own = frame.of(entry);
      if (!entry.is_group()) add(entry, own);
      for (int32_t pass = 0; entry.is_group() && pass < entry.repeat; ++pass) {
        lay_out(entry.entries, own.repeated(entry, pass));
        if (is_full_) return;
      }
      if (is_full_) return;
    }
  }

  std::vector<Event> events;
  int64_t moved = 0;  // away from what reads as an event

 private:
  void add(const Entry& entry, const Frame& frame) {
    is_sound_ = true;
    entry_ = &entry;
    name_ = frame.name();
    if (++count_ > kMostEvents) {
      is_full_ = true;
      return fault(entry.json->place, text("is one too many: a file has %zu events at most", kMostEvents));
    }
    const JsonValue& start = *entry.json->member("start");
    if (!(frame.start_ms <= kLongestMs)) {
      return fault(start.place, text("start: must be at most %d ms, not %.10g", kLongestMs, frame.start_ms));
    }
    Event event = {.name = name_, .place = entry.json->place, .start_ms = rounded(frame.start_ms), .kind = entry.kind};
    const bool is_computed = !frame.path.empty() || start.kind != JsonValue::Kind::kNumber;
    if (is_computed && reads_as_type(event.start_ms)) {
      event.start_ms = LRASYNTH_TRANSIENT + 1;
      ++moved;
    }
    check_type(start.place, "start", event.start_ms);
    std::visit([&](auto& kind) { place_points(kind, frame.start_ms); }, event.kind);
    std::visit([&](auto& kind) { weigh(kind, frame); }, event.kind);
    if (is_sound_) events.push_back(std::move(event));
  }

  // Rounded from the pattern's start on.
  int32_t point_ms(size_t point, double start_ms) const {
    const double first_ms = entry_->times_ms[0];
    return rounded(first_ms) + rounded(start_ms + entry_->times_ms[point] - first_ms) - rounded(start_ms);
  }

  void place_points(Tap&, double) {}

  void place_points(Vibration& vibration, double start_ms) {
    for (size_t i = 0; i < vibration.points.size(); ++i) vibration.points[i].ms = point_ms(i, start_ms);
    const Place duration = entry_->json->member("duration")->place;
    if (!vibration.is_record) vibration.duration_ms = vibration.point_ms(3);
    if (vibration.duration_ms == 0) fault(duration, "duration: is less than a millisecond");
    check_type(duration, "duration", vibration.duration_ms);
    for (size_t i = 0; i < vibration.points.size(); ++i) {
      const JsonValue& time = entry_->json->member("points")->items[i].items[0];
      check_type(time.place, text("point %zu, time", i + 1), vibration.points[i].ms);
    }
  }

  // Its points are no integers of a record.
  void place_points(Curve& curve, double start_ms) {
    for (size_t i = 0; i < curve.points.size(); ++i) curve.points[i].ms = point_ms(i, start_ms);
    if (curve.duration_ms() == 0) fault(entry_->json->member("points")->place, "points: span less than a millisecond");
  }

  template <class Kind>
  void weigh(Kind& kind, const Frame& frame) {
    if (frame.gain == frame.full_gain) return;
    kind.scale(frame.gain, frame.full_gain);
    if (kind.asked() <= 100) return;
    fault(entry_->json->place, text("with the gain of its groups its intensity is %d, more than 100", kind.asked()));
  }

  void check_type(Place place, const std::string& field, int32_t value) {
    if (!reads_as_type(value)) return;
    fault(place, field + text(": %d would read as the start of an event, take %d", value,
                              value == LRASYNTH_CONTINUOUS ? value - 1 : value + 1));
  }

  // Once, however often it is repeated.
  void fault(Place place, std::string what) {
    is_sound_ = false;
    if (told_.insert(place_key(place)).second) faults_.add({name_, place, std::move(what)});
  }

  static std::pair<size_t, size_t> place_key(Place place) { return {place.line, place.column}; }

  Faults& faults_;
  const Entry* entry_ = nullptr;  // that is being added
  EventName name_;
  size_t count_ = 0;  // of events, those that are at fault too
  bool is_full_ = false;
  bool is_sound_ = true;  // what is being added
  std::set<std::pair<size_t, size_t>> told_;
};

void sort(std::vector<Entry>& entries) {
  const auto is_earlier = [](const Entry& a, const Entry& b) { return a.start_ms < b.start_ms; };
  std::stable_sort(entries.begin(), entries.end(), is_earlier);
  for (Entry& entry : entries) sort(entry.entries);
}

}  // namespace

std::vector<Event> laid_out(std::vector<Entry> entries, bool stay, Faults& faults, std::vector<std::string>& notes) {
  if (!stay) sort(entries);
  Layout layout(faults);
  layout.lay_out(entries, Frame());
  if (layout.moved > 0) {
    notes.push_back(counted(layout.moved, "event") +
                    " that would start at 4096 or 4097 ms, which read as the start of "
                    "an event, " +
                    (layout.moved == 1 ? "starts" : "start") + text(" at %d ms", LRASYNTH_TRANSIENT + 1));
  }
  if (!stay) std::stable_sort(layout.events.begin(), layout.events.end(), starts_before);
  return std::move(layout.events);
}

}  // namespace design
