// SPDX-License-Identifier: Apache-2.0
// An estimate of what a finger feels: how far the motor's acceleration lies above the threshold of touch, over time.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "design/waveform/response.h"
#include "design/waveform/samples.h"
#include "design/waveform/waveform.h"

namespace design {

constexpr double kFullyFelt = 20;    // dB above threshold that count as 100 %
constexpr double kHardlyFelt = 10;   // below which an effect is of no use
constexpr double kToldApart = 2.5;   // dB between two that a finger can just tell apart
constexpr double kFrameStepMs = 5;   // from one level to the next
constexpr double kFeltAfterMs = 20;  // the end of an event up to which levels count as its own: half a frame

// The smallest acceleration that is felt at that frequency, in dB re 1 g.
double threshold_db(double hz);

// A tone of so many g that lasts, in dB above threshold; not below 0.
double tone_level(double g, double hz);

constexpr double percent_felt(double level) { return 100 * level / kFullyFelt; }

// "12.3 dB SL, 62 %", as people read a level above threshold, a sensation level.
std::string level_words(double level);

// Takes a drive sample by sample, and makes levels of the acceleration under it. A frame is 40 ms under a periodic Hann
// window, cut out every 5 ms. Its spectrum is made of those of 5 ms each, which eight frames share.
class FeltMeter {
 public:
  FeltMeter(const Resonator& resolved, int32_t sample_rate);

  // Of full scale.
  void drive(double drive);
  // The levels of all frames of which the middles lie from the start to 40 ms beyond the end, where the drive is 0.
  std::vector<double> finish();

 private:
  static constexpr size_t kBins = 20;  // 25, 50 ... 500 Hz
  static constexpr size_t kBlocks = 8;
  static constexpr size_t kSums = kBins + 2;  // a window is felt in the neighbours of a bin

  // Of a block, in its middle: of all bins from 0 Hz on.
  struct Spectrum {
    std::array<double, kSums> real = {};
    std::array<double, kSums> imaginary = {};
  };

  void add_block();
  double level() const;

  Oscillation motor_;
  double unit_;
  size_t samples_;                             // of a block
  std::vector<double> block_;                  // accelerations, as many as have come
  std::vector<Spectrum> waves_;                // cosines and sines at half the samples of a block
  std::array<Spectrum, kBlocks> turns_ = {};   // from a block's middle to the frame's beginning
  std::array<Spectrum, kBlocks> blocks_ = {};  // the last ones, the oldest at next_
  size_t next_ = 0;
  std::array<double, kSums> weights_ = {};  // of the squares of a bin
  size_t count_ = 0;                        // of blocks
  int64_t length_ = 0;                      // samples of the drive
  std::vector<double> levels_;
};

// The levels of a waveform, told of any stretch of it.
class Felt {
 public:
  // Not of an event stream.
  Felt(const Waveform& waveform, const Resonator& resonator);

  const Resonator& resonator() const { return resonator_; }
  // In dB above threshold, at 0, 5, 10 ... ms.
  const std::vector<double>& levels() const { return levels_; }
  double strongest() const { return strongest({0, kFrameStepMs * static_cast<double>(levels_.size())}); }
  // Of the frames of which the middles lie there, its ends included; 0 where there is none.
  double strongest(Span span) const;
  // Straight from one to the next.
  double level_at(double ms) const;
  // The strongest of each of that many equal parts of the time; 0 where there is no level.
  std::vector<double> columns(Span shown, size_t count) const;
  // How long it is above threshold, all in all.
  double felt_ms() const;

 private:
  static constexpr size_t kGroup = 64;  // frames

  Resonator resonator_;
  std::vector<double> levels_;
  std::vector<double> strongest_;  // of each group
};

// What is told of all of it.
std::vector<Number> numbers_of(const Felt& felt);

// A row for each level: "ms,db_sl,percent".
void write_felt_csv(const Felt& felt, const Sink& sink);

}  // namespace design
