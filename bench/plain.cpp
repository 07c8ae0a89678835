// Plain renderings of the same waveforms.
#include "plain.h"

#include <algorithm>
#include <cmath>

#include "lrasynth.h"

namespace plain {
namespace {

using Floats = std::vector<float>;

constexpr float kTwoPi = 6.2831855F;
constexpr double kFullTurn = 6.2831853071586;

float sine_of(double phase) { return static_cast<float>(std::sin(phase)); }

int32_t narrow(float value) { return static_cast<int32_t>(value * 10.0F / 10.0F); }

Floats times(std::size_t count) {
  const auto period = static_cast<float>(1.0 / SAMPLE_RATE);
  Floats time(count);
  for (std::size_t i = 0; i < count; ++i) time[i] = period * static_cast<float>(i);
  return time;
}

Floats envelope(std::size_t count, float start, float end) {
  const float angular = static_cast<float>(6000.0 / static_cast<double>(count)) * kTwoPi;
  const Floats time = times(count);
  Floats values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = (end - start) * sine_of(static_cast<double>(angular * time[i])) + start;
  }
  return values;
}

float amplitude(const int32_t* point) {
  return getIntensityMax(point[2]) * 128.0F * static_cast<float>(point[1]) / 100.0F;
}

void curve_segment(const int32_t* from, const int32_t* to, const Floats& time, Floats& samples, std::size_t offset) {
  const auto count = static_cast<std::size_t>((to[0] - from[0]) * (SAMPLE_RATE / 1000));
  const int32_t base_hz = getF0();
  const int32_t from_hz = getFrequency_4096(base_hz, from[2]);
  const int32_t to_hz = getFrequency_4096(base_hz, to[2]);
  const float slope = getFrequencyStepValue(from_hz, to_hz, static_cast<int32_t>(count));
  const Floats ramp = envelope(count, amplitude(from), amplitude(to));
  for (std::size_t i = 0; i < count; ++i) {
    const float phase = time[i] * ((slope * static_cast<float>(i) + static_cast<float>(from_hz)) * kTwoPi);
    samples[offset + i] = static_cast<float>(std::sin(static_cast<double>(phase)) * static_cast<double>(ramp[i]));
  }
}

void continuous(const int32_t* record, uint8_t* out) {
  const int32_t per_ms = SAMPLE_RATE / 1000;
  const auto count = static_cast<std::size_t>(record[4] * per_ms);
  const Floats time = times(count);
  Floats samples(count);
  for (int point = 0; point < 3; ++point) {
    const int32_t* from = record + 5 + 3 * point;
    curve_segment(from, from + 3, time, samples, static_cast<std::size_t>((from[0] - record[5]) * per_ms));
  }
  for (float& sample : samples) sample = wave_transform(sample + 128.0F);
  samples[0] = 0;
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(static_cast<int32_t>(samples[i]));
}

void append_segment(Floats& transient, int32_t frequency_hz, float cycles, int32_t percent, bool mirrored) {
  const auto count = static_cast<std::size_t>(get_sine_wave_len(frequency_hz, cycles));
  const float step = cycles / static_cast<float>(frequency_hz) / static_cast<float>(count);
  const auto peak = static_cast<float>(percent * 255 / 100);
  Floats time(count);
  Floats segment(count);
  for (std::size_t i = 0; i < count; ++i) time[i] = step * static_cast<float>(i);
  for (std::size_t i = 0; i < count; ++i) {
    segment[i] = std::min(peak * sine_of(frequency_hz * kFullTurn * static_cast<double>(time[i])), 254.0F) + 128.0F;
    if (mirrored) segment[i] = wave_reverse(segment[i]);
  }
  segment[0] = 128.0F;
  transient.insert(transient.end(), segment.begin(), segment.end());
}

std::vector<int32_t> mid_codes(const Floats& transient) {
  std::vector<int32_t> codes;
  for (const float value : transient) codes.push_back(narrow(wave_transform(value)));
  return codes;
}

std::vector<int32_t> edge_codes(const Floats& transient) {
  std::vector<int32_t> codes;
  for (const float value : transient) {
    const auto code = static_cast<int32_t>(custom_wave_transform(narrow(value)));
    codes.push_back(code == 128 && !codes.empty() && codes.back() == 127 ? 127 : code);
  }
  return codes;
}

void tap_1040(int32_t level, int32_t intensity, uint8_t* out) {
  const bool mid = level >= 25 && level <= 70;
  const int32_t half = intensity / 2;
  const auto zero = static_cast<std::size_t>(static_cast<float>(SAMPLE_RATE) * getZeroTime(level) / 1000.0F);
  Floats transient;
  append_segment(transient, getFrequency(level), getC0(level), half, false);
  transient.insert(transient.end(), zero, 128.0F);
  append_segment(transient, getF1(level), mid ? 0.5F : 1.0F, getA1(level, half), false);
  append_segment(transient, getF2(), 0.5F, getA2(level, half), mid);
  std::vector<int32_t> codes = mid ? mid_codes(transient) : edge_codes(transient);
  codes[0] = 0;
  for (std::size_t i = 0; i < codes.size(); ++i) out[i] = static_cast<uint8_t>(codes[i]);
}

void replay(const uint8_t* table, int32_t length, int32_t intensity, uint8_t* out) {
  const auto count = static_cast<std::size_t>(length);
  std::vector<int32_t> wide(count);
  transStringDataToInt(table, length, wide.data());
  const float scale = static_cast<float>(intensity) / 100.0F;
  const auto threshold = static_cast<int32_t>(scale * 128.0F);
  Floats scaled(count);
  for (std::size_t i = 0; i < count; ++i) scaled[i] = scale * static_cast<float>(static_cast<int8_t>(wide[i]) + 128);
  for (std::size_t i = 0; i < count; ++i) {
    const double x = scaled[i];
    const double y = narrow(scaled[i]) > threshold ? x - scale * 128.0 : (1.0F - scale) * 128.0 + (x + 128.0);
    scaled[i] = wide[i] == 0 ? 0.0F : static_cast<float>(y);
  }
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<uint8_t>(narrow(scaled[i]));
}

}  // namespace

void tap(int32_t level, int32_t intensity, uint8_t* out, int32_t length) {
  if (giMotorType == 1040) return tap_1040(level, intensity, out);
  replay(giMotorType == 832 ? wave_custom_1T : wave_custom_T50, length, intensity, out);
}

void long_signal(const std::vector<int32_t>& request, uint8_t* out, int32_t length) {
  const int32_t per_ms = SAMPLE_RATE / 1000;
  for (std::size_t i = 0; i < request.size(); i += 17) {
    if (request[i] == 4096) continuous(&request[i], out + request[i + 1] * per_ms);
  }
  std::vector<uint8_t> whole;
  for (std::size_t i = 0; i < request.size(); i += 17) {
    if (request[i] != 4097) continue;
    const int32_t start = request[i + 1] * per_ms;
    whole.resize(static_cast<std::size_t>(getShortSignalDataLength(request[i + 3])));
    tap(request[i + 3], getIntensity(request[i + 3], request[i + 2]), whole.data(), static_cast<int32_t>(whole.size()));
    std::copy_n(whole.begin(), std::min<int32_t>(static_cast<int32_t>(whole.size()), length - start), out + start);
  }
}

float two_sines(int32_t samples) {
  constexpr float kCarrier = 6.2831855F * 170 / 24000;
  constexpr float kEnvelope = 1.5707964F / 24000;
  float sum = 0;
  for (int32_t i = 0; i < samples; ++i) {
    const auto position = static_cast<float>(i % 24000);
    sum += sine_of(static_cast<double>(kCarrier * position)) * sine_of(static_cast<double>(kEnvelope * position));
  }
  return sum;
}

}  // namespace plain
