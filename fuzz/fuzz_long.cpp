// Fuzzes long-signal requests: well-formed ones, such bent in a few places, and arbitrary integers.
#include "digest_families.h"
#include "input.h"

namespace {

void bend(Input& in, std::vector<int32_t>& pattern) {
  for (int32_t bends = in.raw<uint8_t>() % 4; bends >= 0; --bends) {
    pattern[in.raw<uint8_t>() % pattern.size()] = in.flip() ? LRASYNTH_CONTINUOUS + in.flip() : in.integer();
  }
  if (in.flip()) pattern.resize(pattern.size() - in.raw<uint8_t>() % 17);
}

std::vector<int32_t> arbitrary(Input& in) {
  std::vector<int32_t> pattern(in.raw<uint8_t>() % 80);
  for (int32_t& value : pattern) value = in.raw<uint8_t>() % 8 == 0 ? LRASYNTH_CONTINUOUS + in.flip() : in.integer();
  return pattern;
}

// Windows are those of the whole; the whole is what getLongSignalData writes into a cleared buffer, where it does.
void check_windows(Input& in, const lrasynth_pattern& pattern) {
  const lrasynth_profile profile = {IC_TYPE, SAMPLE_RATE, giMotorType, giBoostFlg};
  int32_t index = 0;
  require(lrasynth_pattern_check(&profile, &pattern, &index) <= 0 && index >= 0);
  const int64_t length = lrasynth_pattern_length(&profile, &pattern);
  if (length < 0 || length > kMostElements) return;
  const auto whole = std::make_unique<uint8_t[]>(static_cast<size_t>(length));
  const auto same = std::make_unique<uint8_t[]>(static_cast<size_t>(length));
  require(lrasynth_pattern_read(&profile, &pattern, 0, whole.get(), length) == length);
  if (getLongSignalData(pattern.loop_count, pattern.interval_ms, pattern.records, same.get(), pattern.length,
                        LRASYNTH_NO_LIMIT_MS) == 0) {
    require(std::equal(whole.get(), whole.get() + length, same.get()));
  }
  for (int32_t i = 0; i < 4; ++i) {
    check_window(in, whole.get(), length, [&](int64_t first, uint8_t* out, int64_t count) {
      return lrasynth_pattern_read(&profile, &pattern, first, out, count);
    });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Input in{bytes, size};
  in.set_profile();
  const uint8_t kind = in.raw<uint8_t>() % 4;
  // In well-formed ones the last vibration ends last.
  std::vector<int32_t> pattern = kind == 3 ? arbitrary(in) : grid::make_pattern(in, 300);
  if (kind == 1 || kind == 2) bend(in, pattern);
  pattern.shrink_to_fit();  // so that the sanitizer sees reads beyond
  const auto length = static_cast<int32_t>(pattern.size());
  const int32_t loops = in.integer(), gap_ms = in.integer(), limit_ms = in.integer();

  getLongSignalDataLength(loops, gap_ms, pattern.data(), length);
  check_output<uint8_t>(getLongSignalBufferLength(loops, gap_ms, pattern.data(), length),
                        IC_TYPE == LRASYNTH_CHIP_EVENT_STREAM ? Extent::kWhole : Extent::kPart, [&](uint8_t* out) {
                          return getLongSignalData(loops, gap_ms, pattern.data(), out, length, limit_ms);
                        });
  check_windows(in, {pattern.data(), length, loops, gap_ms, limit_ms});
  return 0;
}
