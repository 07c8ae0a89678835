// The exports of long signals, by chip: samples, or the compact event stream.
#include <limits>

#include "lrasynth.h"
#include "pattern/event_stream.h"
#include "pattern/long_signal.h"
#include "pattern/vibration.h"
#include "profile/arithmetic.h"
#include "transient/tap.h"

namespace lrasynth {
namespace {

constexpr int64_t kMostBytes = std::numeric_limits<int32_t>::max();

// Nothing is drawn for an array that would have to be read and is not there.
bool refuses_request(const Profile& profile, const int32_t* pattern, int32_t length) {
  const int32_t least = profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM ? 1 : LRASYNTH_RECORD_LENGTH;
  return pattern == nullptr && length >= least;
}

bool is_servable(const LongSignal& signal) {
  return !signal.has_early_event() && !signal.has_early_copy() && signal.length() <= kMostBytes;
}

int32_t stream_length(const EventStream& stream) {
  return stream.length() <= kMostBytes ? static_cast<int32_t>(stream.length()) : 0;
}

int32_t write_stream(const EventStream& stream, uint8_t* out) {
  if (stream.length() > kMostBytes || out == nullptr) return -1;
  stream.draw({0, stream.length(), out});
  return 0;
}

// F0 is set at the turn of the first continuous vibration, late or not.
int32_t write_samples(const Profile& profile, const LongSignal& signal, int32_t limit_samples, uint8_t* out) {
  if (!is_servable(signal) || refuses(out, signal.length())) return -1;
  if (signal.has_vibration()) publish_f0(profile.motor);
  if (!signal.starts_by(limit_samples)) {
    signal.draw_until(limit_samples, out);
    return -1;
  }
  signal.draw({0, signal.length(), out});
  return 0;
}

}  // namespace
}  // namespace lrasynth

using namespace lrasynth;

int32_t getLongSignalDataLength(int32_t loopCount, int32_t /*intervalMs*/, const int32_t* pattern, int32_t patternLen) {
  const Profile profile = current_profile();
  if (refuses_request(profile, pattern, patternLen)) return 0;
  const Request request(pattern, patternLen);
  if (profile.chip_type != LRASYNTH_CHIP_EVENT_STREAM) return pass_length(profile, request);
  return stream_length(EventStream(request, loopCount));
}

int32_t getLongSignalBufferLength(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, int32_t patternLen) {
  const Profile profile = current_profile();
  if (refuses_request(profile, pattern, patternLen)) return 0;
  const Request request(pattern, patternLen);
  if (profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM) {
    return stream_length(EventStream(request, loopCount));
  }
  const LongSignal signal(profile, request, loopCount, intervalMs);
  return is_servable(signal) ? static_cast<int32_t>(signal.length()) : 0;
}

int32_t getLongSignalData(int32_t loopCount, int32_t intervalMs, const int32_t* pattern, uint8_t* out,
                          int32_t patternLen, int32_t limitMs) {
  const Profile profile = current_profile();
  if (refuses_request(profile, pattern, patternLen)) return -1;
  const Request request(pattern, patternLen);
  if (profile.chip_type == LRASYNTH_CHIP_EVENT_STREAM) {
    return write_stream(EventStream(request, loopCount), out);
  }
  const int32_t limit_samples = wrapping_multiply(profile.rate.hz, limitMs) / 1000;
  const LongSignal signal(profile, request, loopCount, intervalMs);
  return write_samples(profile, signal, limit_samples, out);
}

int32_t get_4096_wave(const int32_t* event, uint8_t* out, int32_t limitSamples) {
  if (event == nullptr) return -1;
  const Profile profile = current_profile();
  const Record record(event);
  const Vibration vibration(profile, record);
  if (refuses(out, vibration.length())) return -1;
  publish_f0(profile.motor);
  if (profile.rate.samples(record.start_ms()) > limitSamples) return -1;
  vibration.draw({0, vibration.length(), out});
  return 0;
}

int32_t get_4097_wave(int32_t startMs, int32_t intensity, int32_t level, uint8_t* out) {
  const Profile profile = current_profile();
  const int32_t start = profile.rate.samples(startMs);
  const Tap tap = tap_in_pattern(profile, level, intensity);
  if (start < 0 || refuses(out, tap.length())) return -1;
  if (tap.length() > 0) tap.draw({0, tap.length(), out + start});
  return 0;
}
