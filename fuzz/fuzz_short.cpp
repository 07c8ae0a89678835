// Fuzzes the profile, the short signals and all building blocks.
#include "digest_families.h"
#include "input.h"

namespace {

void tap(Input& in) {
  const grid::TapFunctions& functions = grid::kTaps[in.raw<uint8_t>() % std::size(grid::kTaps)];
  const int32_t level = in.integer(), intensity = in.integer();
  check_output<uint8_t>(functions.length(level), Extent::kWhole,
                        [&](uint8_t* out) { return functions.data(level, intensity, out); });
}

void tap_window(Input& in) {
  const lrasynth_profile profile = {IC_TYPE, SAMPLE_RATE, giMotorType, giBoostFlg};
  const int32_t level = in.integer(), intensity = in.integer();
  const int64_t length = lrasynth_tap_length(&profile, level);
  if (length < 0 || length > kMostElements) return;
  const auto whole = std::make_unique<uint8_t[]>(static_cast<size_t>(length));
  require(getShortSignalData(level, intensity, whole.get()) == 0);
  check_window(in, whole.get(), length, [&](int64_t first, uint8_t* out, int64_t count) {
    return lrasynth_tap_read(&profile, level, intensity, first, out, count);
  });
}

void curves(Input& in) {
  const int32_t x = in.integer(), y = in.integer(), z = in.integer();
  for (const auto curve : grid::kLevelCurves) require(curve(x) == curve(x));
  for (const auto curve : grid::kCurvesOfTwo) require(curve(x, y) == curve(x, y));
  for (const auto gain : {getIntensityMax, getIntensityMax_0832, getIntensityMax_1040, getIntensityMax_9595}) {
    require(gain(x) > 0 && gain(x) == gain(std::clamp(x, -50, 50)));
  }
  require(getFrequency(x) == getFrequency(std::clamp(x, 0, 100)));
  getFrequencyStepValue(x, y, z);
  wave_transform(in.number());
  custom_wave_transform(x);
}

void transient(Input& in) {
  const int32_t level = in.integer(), intensity = in.integer(), f1 = in.integer(), a1 = in.integer();
  const int32_t f2 = in.integer(), a2 = in.integer(), reverse = in.integer();
  const float zero_ms = in.number(), c0 = in.number(), c1 = in.number(), c2 = in.number();
  check_output<int32_t>(get_wave_func_wave_len(level, f1, f2, zero_ms), Extent::kPart,
                        [=](int32_t* out) { return wave_func(level, intensity, f1, a1, f2, a2, out, zero_ms); });
  check_output<int32_t>(
      get_wave_func_wave_len_custom(level, f1, f2, c0, c1, c2, zero_ms), Extent::kPart, [=](int32_t* out) {
        return wave_func_custom(getFrequency(level), intensity, f1, a1, f2, a2, reverse, out, c0, c1, c2, zero_ms);
      });
}

void tone(Input& in) {
  const int32_t hz = in.integer(), amplitude = in.integer(), half_periods = in.integer();
  const float cycles = in.number(), end = in.number();
  check_output<float>(get_sine_wave_len(hz, cycles), Extent::kWhole,
                      [=](float* out) { return get_sine(hz, amplitude, out, cycles); });
  check_output<uint8_t>(get_sine_wave_len(hz, static_cast<float>(half_periods) * 0.5F), Extent::kWhole,
                        [=](uint8_t* out) { return sine(half_periods, hz, amplitude, out); });
  check_output<float>(std::max(0, amplitude), Extent::kWhole,
                      [=](float* out) { return getIncreasingStepIntensity(amplitude, out, cycles, end); });
}

// The parts of a long signal as functions of their own.
void event(Input& in) {
  std::vector<int32_t> record(LRASYNTH_RECORD_LENGTH);
  for (int32_t& field : record) field = in.integer();
  const int32_t limit = in.integer(), start = to_samples(record[1]), length = getShortSignalDataLength(record[3]);
  check_output<uint8_t>(std::max(0, to_samples(record[4])), Extent::kWhole,
                        [&](uint8_t* out) { return get_4096_wave(record.data(), out, limit); });
  if (start > kMostElements) return;
  check_output<uint8_t>(start >= 0 && length > 0 ? start + length : 0, Extent::kPart,
                        [&](uint8_t* out) { return get_4097_wave(record[1], record[2], record[3], out); });
}

void widen(Input& in) {
  const std::vector<uint8_t> source(in.raw<uint8_t>(), in.raw<uint8_t>());
  const auto count = static_cast<int32_t>(source.size());
  check_output<int32_t>(count, Extent::kWhole,
                        [&](int32_t* out) { return transStringDataToInt(source.data(), count, out); });
}

constexpr void (*kCalls[])(Input&) = {tap, curves, transient, tone, event, widen, tap_window};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Input in{bytes, size};
  in.set_profile();
  for (int call = 0; call < 8 && in.left > 0; ++call) kCalls[in.raw<uint8_t>() % std::size(kCalls)](in);
  return 0;
}
