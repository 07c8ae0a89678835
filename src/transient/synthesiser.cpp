// The two synthesisers of a motor-1040 transient and their exports.
#include "transient/synthesiser.h"

#include <algorithm>

#include "curves/frequency.h"
#include "curves/pieces.h"
#include "lrasynth.h"
#include "profile/arithmetic.h"
#include "profile/sample_code.h"
#include "tone/sine_segment.h"
#include "tone/speculation.h"

namespace lrasynth {
namespace {

// Mid level: the float is coded, then narrowed.
struct MidCoding {
  static constexpr float kSwitch = 128.0F;
  static constexpr float kRounding = kSumRounding;
  static int32_t code(float offset_value) { return narrow(code_offset(offset_value)); }
  void settle(int32_t* /*codes*/, int32_t /*n*/) {}
};

// Edge level: narrowed first, then coded. A code of 128 right after a 127 becomes 127 as well, so that a rising peak
// does not tip over into the sign bit. Every segment starts at rest, so a `previous` from before it does no harm.
struct EdgeCoding {
  static constexpr float kSwitch = 129.0F;
  static constexpr float kRounding = 0.0F;
  static int32_t code(float offset_value) { return code_truncated_offset(narrow(offset_value)); }

  void settle(int32_t* codes, int32_t n) {
    for (int32_t j = 0; j < n; ++j) {
      if (codes[j] == 128 && previous == 127) codes[j] = 127;
      previous = codes[j];
    }
  }

  int32_t previous = 0;
};

// Amplitudes of the three sine segments in percent of 255, and whether F2 is turned upside down.
struct Drive {
  int32_t amplitude;
  int32_t f1_amplitude;
  int32_t f2_amplitude;
  bool f2_mirrored;
};

// Writes the pieces of a transient one after another, as far as the room lasts.
template <class Coding, class Sample>
class Pen {
 public:
  Pen(Sample* out, int32_t room) : out_(out), room_(room) {}

  void draw(const SineSegment& segment) {
    if (segment.silent()) return rest(segment.count());
    const int32_t n = std::min(segment.count(), room_);
    render(segment, coding_, 0, n, out_);
    advance(n);
  }

  void rest(int32_t count) {
    const int32_t n = std::min(count, room_);
    std::fill_n(out_, n, Sample{kRestCode});
    advance(n);
  }

  int32_t room() const { return room_; }

 private:
  void advance(int32_t n) {
    out_ += n;
    room_ -= n;
  }

  Coding coding_;
  Sample* out_;
  int32_t room_;
};

// The four pieces in time order, cut at `room` samples. Returns how many were written.
template <class Coding, class Sample>
int32_t render_transient(const TransientShape& shape, const Drive& drive, Sample* out, int32_t room) {
  if (shape.drive_hz <= 0 || room == 0) return 0;
  Pen<Coding, Sample> pen(out, room);
  pen.draw(SineSegment(shape.drive_hz, shape.drive_cycles, drive.amplitude));
  pen.rest(truncate(zero_samples(shape.zero_ms)));
  pen.draw(SineSegment(shape.f1_hz, shape.f1_cycles, drive.f1_amplitude));
  pen.draw(SineSegment(shape.f2_hz, shape.f2_cycles, drive.f2_amplitude, drive.f2_mirrored));
  const int32_t written = room - pen.room();
  out[0] = kFirstCode;  // a sum of at least 1 has a piece of at least 1
  return written;
}

// At rates other than 24000 and 12000 the length can differ from the sum of the pieces by a sample: the length wins,
// rest fills it up.
template <class Coding>
void render_tap(const TransientShape& shape, const Drive& drive, uint8_t* out, int32_t capacity) {
  const int32_t length = std::min(transient_length(shape), capacity);
  const int32_t written = render_transient<Coding>(shape, drive, out, length);
  std::fill(out + written, out + length, kRestCode);
}

// For the entry points that write integers.
template <class Coding>
int32_t render_integers(const TransientShape& shape, const Drive& drive, int32_t* out) {
  const int32_t length = transient_length(shape);
  if (refuses(out, length)) return -1;
  render_transient<Coding>(shape, drive, out, length);
  return 0;
}

}  // namespace

// Both entry points drive at half the intensity; only the mid level also halves what F1 and F2 see.
void render_mid_tap(int32_t level, int32_t intensity, uint8_t* out, int32_t capacity) {
  const int32_t half = intensity / 2;
  const Drive drive = {half, f1_amplitude(level, half), f2_amplitude(level, half), true};
  render_tap<MidCoding>(mid_shape(level), drive, out, capacity);
}

void render_edge_tap(int32_t level, int32_t intensity, uint8_t* out, int32_t capacity) {
  const Drive drive = {intensity / 2, f1_amplitude(level, intensity), f2_amplitude(level, intensity), false};
  render_tap<EdgeCoding>(edge_shape(level), drive, out, capacity);
}

}  // namespace lrasynth

int32_t shortWave_func(int32_t level, int32_t intensity, uint8_t* out) {
  const int32_t length = get_custom_wave_len(level);
  if (lrasynth::refuses(out, length)) return -1;
  lrasynth::render_mid_tap(level, intensity, out, length);
  return 0;
}

int32_t shortWave_func_custom(int32_t level, int32_t intensity, uint8_t* out) {
  const int32_t length = get_wav_len_high_frequency(level);
  if (lrasynth::refuses(out, length)) return -1;
  lrasynth::render_edge_tap(level, intensity, out, length);
  return 0;
}

int32_t wave_func(int32_t level, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2, int32_t* out,
                  float zeroTimeMs) {
  const int32_t drive_hz = lrasynth::level_frequency_hz(level);
  const lrasynth::TransientShape shape = lrasynth::mid_shape(drive_hz, f1Hz, f2Hz, zeroTimeMs);
  return lrasynth::render_integers<lrasynth::MidCoding>(shape, {intensity, a1, a2, true}, out);
}

int32_t wave_func_custom(int32_t frequencyHz, int32_t intensity, int32_t f1Hz, int32_t a1, int32_t f2Hz, int32_t a2,
                         int32_t reverse, int32_t* out, float c0, float c1, float c2, float zeroTimeMs) {
  const lrasynth::TransientShape shape = {.drive_hz = frequencyHz,
                                          .f1_hz = f1Hz,
                                          .f2_hz = f2Hz,
                                          .drive_cycles = c0,
                                          .f1_cycles = c1,
                                          .f2_cycles = c2,
                                          .zero_ms = zeroTimeMs};
  return lrasynth::render_integers<lrasynth::EdgeCoding>(shape, {intensity, a1, a2, reverse == 1}, out);
}
