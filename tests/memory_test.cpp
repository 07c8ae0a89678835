// SPDX-License-Identifier: Apache-2.0
// Calls use less stack than the header says, over the whole grid. That they use no heap follows from what the library
// imports.
#include <pthread.h>

#include <algorithm>
#include <cstddef>
#include <functional>

#include "digest.h"

namespace {

using Walk = std::function<void(Digest&)>;

constexpr std::ptrdiff_t kLimit = 16 * 1024;

void* run(void* walk) {
  static Digest digest;
  (*static_cast<const Walk*>(walk))(digest);
  return nullptr;
}

// Of a thread whose stack is painted: what has lost its paint was used.
std::ptrdiff_t stack_of(Walk walk) {
  alignas(4096) static uint8_t stack[16 * kLimit];
  constexpr uint8_t kPaint = 0xC7;
  std::fill(std::begin(stack), std::end(stack), kPaint);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack, sizeof stack);
  pthread_t thread{};
  if (pthread_create(&thread, &attributes, run, &walk) != 0) std::abort();
  pthread_join(thread, nullptr);
  return std::end(stack) - std::find_if(std::begin(stack), std::end(stack), [](uint8_t b) { return b != kPaint; });
}

// 102 000 integers.
void longest_pattern(Digest& digest) {
  std::vector<int32_t> pattern;
  for (int32_t i = 0; i < 6000; ++i) {
    pattern.insert(pattern.end(), {4096, i, 0, 0, 7, 0, 10, 0, 2, 90, 20, 4, 50, -9, 7, 70, 3});
  }
  static uint8_t out[1U << 20U];
  digest.result(getLongSignalData(3, 1, pattern.data(), out, static_cast<int32_t>(pattern.size()), 80000));
}

void stack_up(Digest& /*digest*/) {
  volatile uint8_t big[2 * kLimit];
  for (volatile uint8_t& byte : big) byte = 0;
}

}  // namespace

int main() {
  const Walk nothing = [](Digest&) {};
  stack_of(nothing);  // the first thread binds symbols on its stack
  const std::ptrdiff_t idle = stack_of(nothing);
  std::ptrdiff_t most = stack_of(longest_pattern) - idle;
  every_profile([&] {
    every_call(3, [&](const char* /*name*/, const auto& walk) { most = std::max(most, stack_of(walk) - idle); });
  });
  std::printf("%td bytes of stack at most\n", most);
  return most < kLimit && stack_of(stack_up) - idle > kLimit ? 0 : 1;
}
