// Fuzzes long-signal requests: well-formed ones, such bent in a few places, and arbitrary integers.
#include <cstdint>
#include <vector>

#include "input.h"

namespace {

using fuzz::Extent;
using fuzz::Input;
using fuzz::require;

// Events in order of start, closed by a vibration that ends last; small numbers, so that none reads as a type code.
std::vector<int32_t> well_formed(Input& in) {
  std::vector<int32_t> pattern;
  int32_t start_ms = 0, end_ms = 0;
  for (int32_t left = in.raw<uint8_t>() % 8; left >= 0; --left) {
    const int32_t intensity = in.raw<uint8_t>(), level = in.raw<uint8_t>();
    const bool vibrates = left == 0 || in.flip();
    int32_t duration_ms = vibrates ? in.raw<uint8_t>() : 0;
    if (left == 0) duration_ms = std::max(duration_ms, end_ms + 60 - start_ms);
    for (const int32_t field : {vibrates ? 4096 : 4097, start_ms, intensity, level, duration_ms})
      pattern.push_back(field);
    for (int32_t point = 0; point < 4; ++point) {
      pattern.push_back(duration_ms * point / 3);
      for (int32_t field = 0; field < 2; ++field) pattern.push_back(vibrates ? in.raw<int8_t>() : 0);
    }
    end_ms = std::max(end_ms, start_ms + duration_ms);
    start_ms += in.raw<uint8_t>();
  }
  return pattern;
}

void bend(Input& in, std::vector<int32_t>& pattern) {
  for (int32_t bends = in.raw<uint8_t>() % 4; bends >= 0; --bends) {
    pattern[in.raw<uint8_t>() % pattern.size()] = in.flip() ? 4096 + in.flip() : in.integer();
  }
  if (in.flip()) pattern.resize(pattern.size() - in.raw<uint8_t>() % 17);
}

std::vector<int32_t> arbitrary(Input& in) {
  std::vector<int32_t> pattern(in.raw<uint8_t>() % 80);
  for (int32_t& value : pattern) value = in.raw<uint8_t>() % 8 == 0 ? 4096 + in.flip() : in.integer();
  return pattern;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  Input in(bytes, size);
  in.set_profile();
  const uint8_t kind = in.raw<uint8_t>() % 4;
  std::vector<int32_t> pattern = kind == 3 ? arbitrary(in) : well_formed(in);
  if (kind == 1 || kind == 2) bend(in, pattern);
  pattern.shrink_to_fit();  // so that the sanitizer sees reads beyond
  const auto length = static_cast<int32_t>(pattern.size());
  const int32_t loops = in.integer(), gap_ms = in.integer(), limit_ms = in.integer();

  const int32_t plain = getLongSignalDataLength(loops, gap_ms, pattern.data(), length);
  const int32_t whole = getLongSignalBufferLength(loops, gap_ms, pattern.data(), length);
  const bool plain_rate = SAMPLE_RATE == 24000 || SAMPLE_RATE == 12000;
  if (kind == 0 && plain_rate && (loops < 2 || IC_TYPE == 11)) require(plain == whole);
  fuzz::check_output<uint8_t>(whole, IC_TYPE == 11 ? Extent::kWhole : Extent::kPart, [&](uint8_t* out) {
    const int32_t status = getLongSignalData(loops, gap_ms, pattern.data(), out, length, limit_ms);
    const int32_t gap = fuzz::samples(gap_ms);
    if (status == 0 && kind == 0 && plain_rate && IC_TYPE != 11 && loops > 1 && gap >= 0 && out != nullptr) {
      require(std::equal(out, out + plain, out + (loops - 1) * (int64_t{plain} + gap)));
    }
    return status;
  });
  return 0;
}
