// SPDX-License-Identifier: Apache-2.0
// What is kept of a sound: its strength and brightness, millisecond by millisecond.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace design {

// A band's mean square, and that of the differences between neighbouring samples. The two tell the frequency of a tone
// wherever in the band it lies.
struct BandPower {
  float energy = 0;
  float change = 0;

  double hertz(double rate) const;
};

// A millisecond.
struct Frame {
  float peak = 0;   // largest magnitude
  float power = 0;  // mean square
  // The lowest two bands, of whose periods a millisecond has only a part.
  BandPower low = {};
  BandPower mid = {};
  // All octaves above: their energy, and how many octaves above 1 Hz they lie, times their energy.
  float high = 0;
  float high_octaves = 0;

  // Bands alone.
  void add(const Frame& other, float weight);
};

// Splits a sound into octaves from above, each at half the rate of the one before. Computes with the four basic
// operations only, but for a logarithm a millisecond: the same numbers wherever it is compiled.
class Hearing {
 public:
  explicit Hearing(double rate);

  void hear(std::span<const float> samples);
  // Once, behind the last sample; then there is a frame for each millisecond that has begun.
  const std::vector<Frame>& finish();

  // How many octaves above 1 Hz frames sound, of which those of low, mid and high that are given are sums.
  double octaves(const Frame& sum) const;

 private:
  // Where the samples of a stage go: to the frame of their time.
  class Clock {
   public:
    Clock(double rate, double delay_ms) : rate_(rate), delay_(delay_ms * rate / 1000) { end_ = end_of(0); }

    // How many of the next samples belong to the current frame.
    size_t left(size_t most) const;
    // Whether the frame is complete after so many more.
    bool pass(size_t count);
    size_t frame() const { return frame_; }

   private:
    int64_t end_of(size_t frame) const;

    double rate_;
    double delay_;
    size_t frame_ = 0;
    int64_t end_;
    int64_t passed_ = 0;
  };

  // Splits what it hears at a quarter of its rate.
  struct Stage {
    enum Kind { kUnheard, kOctave, kLast };

    Stage(Kind kind, double rate, double delay_ms);

    Kind kind;
    double rate;
    Clock clock;
    std::vector<float> samples;  // behind those that reach into the next block
    std::vector<float> low;
    std::vector<float> high;
    BandPower low_sum = {};
    BandPower high_sum = {};
    float before_low = 0;
    float before_high = 0;
    size_t skipped = 0;  // of the next samples, at half the rate
  };

  void hear_block(std::span<const float> samples);
  void hear_whole(std::span<const float> samples);
  static void split(Stage& stage);
  void measure(Stage& stage);
  static void halve(Stage& stage, std::vector<float>& into);
  Frame& frame(size_t index);

  std::vector<Frame> frames_;
  std::vector<Stage> stages_;
  std::vector<float> block_;
  double rate_;
  double whole_rate_;  // of what strength is measured of: not beyond hearing
  Clock whole_;
  float whole_peak_ = 0;
  float whole_power_ = 0;
  float rest_ = 0;  // what the sound is offset by
  int64_t heard_ = 0;
};

}  // namespace design
