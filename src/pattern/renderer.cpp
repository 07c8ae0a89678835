// The renderer of long signals: continuous vibrations, then transients, then copies of the pass.
#include <algorithm>

#include "curves/intensity.h"
#include "lrasynth.h"
#include "pattern/continuous.h"
#include "pattern/event_stream.h"
#include "pattern/layout.h"
#include "pattern/request.h"
#include "profile/arithmetic.h"
#include "profile/profile.h"
#include "transient/short_signal.h"

namespace lrasynth {
namespace {

// Draws the event at out[start] if it starts in time, and returns whether it does. F0 is set either way.
bool draw_continuous(const Record& event, uint8_t* out, int32_t start, int32_t limit_samples) {
  store_f0(base_frequency_hz());
  if (event.start_samples() > limit_samples) return false;
  render_continuous(event, out, start);
  return true;
}

// As far as the room lasts, which is counted from the pattern's start.
void draw_transient(int32_t start, int32_t intensity, int32_t level, uint8_t* out, int64_t room) {
  const int64_t left = std::min<int64_t>(room - start, tap_length(giMotorType, level));
  if (left <= 0) return;
  render_tap(giMotorType, level, tap_intensity(level, intensity), out + start, static_cast<int32_t>(left));
}

// Whether all of them start within the pattern and in time; the first that does not ends the drawing.
bool draw_continuous_events(const Request& request, int32_t limit_samples, uint8_t* out) {
  for (int32_t i = request.find(kContinuous, 0); i < request.length(); i = request.find(kContinuous, i + 1)) {
    const Record event = request.record(i);
    const int32_t start = event.start_samples();
    if (start < 0 || !draw_continuous(event, out, start, limit_samples)) return false;
  }
  return true;
}

bool draw_transients(const Request& request, int64_t room, uint8_t* out) {
  for (int32_t i = request.find(kTransient, 0); i < request.length(); i = request.find(kTransient, i + 1)) {
    const Record event = request.record(i);
    const int32_t start = event.start_samples();
    if (start < 0) return false;
    draw_transient(start, event.intensity(), event.level(), out, room);
  }
  return true;
}

// A negative interval can make copies overlap. Copied byte by byte in ascending order, the pass then repeats with the
// period of the stride, which one run over the whole extent gives as well.
void copy_passes(const Layout& layout, uint8_t* out) {
  const bool overlapping = layout.stride < layout.pass;
  const int64_t runs = overlapping ? 1 : layout.copies;
  const int64_t length = overlapping ? layout.end_of_copies() - layout.stride : layout.pass;
  for (int64_t run = 1; run <= runs; ++run) {
    uint8_t* const target = out + run * layout.stride;
    for (int64_t i = 0; i < length; ++i) target[i] = out[i];
  }
}

int32_t render_samples(const Request& request, int32_t loop_count, int32_t interval_ms, int32_t limit_ms,
                       uint8_t* out) {
  const Layout layout = layout_of(request, loop_count, interval_ms);
  if (!layout.is_servable() || refuses(out, layout.end())) return -1;
  const int32_t limit_samples = wrapping_multiply(SAMPLE_RATE, limit_ms) / 1000;
  if (!draw_continuous_events(request, limit_samples, out)) return -1;
  if (!draw_transients(request, layout.room, out)) return -1;
  if (layout.copies > 0 && layout.stride > 0) copy_passes(layout, out);
  return 0;
}

}  // namespace
}  // namespace lrasynth

int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, uint8_t* out,
                          int32_t patternLen, int32_t limitMs) {
  if (IC_TYPE == lrasynth::kEventStreamChip) {
    return lrasynth::write_event_stream(loopCount, pattern, patternLen, out);
  }
  if (lrasynth::refuses(pattern, int64_t{patternLen} - lrasynth::kRecordLength + 1)) return -1;
  return lrasynth::render_samples(lrasynth::Request(pattern, patternLen), loopCount, intervalMs, limitMs, out);
}

int32_t get_4096_wave(const int32_t* event, uint8_t* out, int32_t limitSamples) {
  if (event == nullptr) return -1;
  const lrasynth::Record record(event);
  if (lrasynth::refuses(out, record.duration_samples())) return -1;
  return lrasynth::draw_continuous(record, out, 0, limitSamples) ? 0 : -1;
}

int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t* out) {
  const int32_t start = lrasynth::wrapping_multiply(lrasynth::samples_per_ms(), startMs);
  const int32_t length = lrasynth::tap_length(giMotorType, level);
  if (start < 0 || lrasynth::refuses(out, length)) return -1;
  lrasynth::draw_transient(start, intensity, level, out, int64_t{start} + length);
  return 0;
}
