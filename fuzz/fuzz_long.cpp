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

  const int32_t plain = getLongSignalDataLength(loops, gap_ms, pattern.data(), length);
  const int32_t whole = getLongSignalBufferLength(loops, gap_ms, pattern.data(), length);
  const bool plain_rate = SAMPLE_RATE == 24000 || SAMPLE_RATE == 12000;
  if (kind == 0 && plain_rate && (loops < 2 || IC_TYPE == LRASYNTH_CHIP_EVENT_STREAM)) require(plain == whole);
  check_output<uint8_t>(
      whole, IC_TYPE == LRASYNTH_CHIP_EVENT_STREAM ? Extent::kWhole : Extent::kPart, [&](uint8_t* out) {
        const int32_t status = getLongSignalData(loops, gap_ms, pattern.data(), out, length, limit_ms);
        const int32_t gap = to_samples(gap_ms);
        if (status == 0 && kind == 0 && plain_rate && IC_TYPE != LRASYNTH_CHIP_EVENT_STREAM && loops > 1 && gap >= 0 &&
            out != nullptr) {
          require(std::equal(out, out + plain, out + (loops - 1) * (int64_t{plain} + gap)));
        }
        return status;
      });
  return 0;
}
