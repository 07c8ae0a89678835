// What calls take from their host, over the whole grid: no heap, and less stack than the header says.
#include <pthread.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "digest_families.h"

namespace {

int allocations = 0;

void* counted(void* block) {
  ++allocations;
  return block;
}

}  // namespace

// In place of the C library's, for every object in the process.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void* malloc(size_t size) { return counted(__libc_malloc(size)); }
void* calloc(size_t count, size_t size) { return counted(__libc_calloc(count, size)); }
void* realloc(void* block, size_t size) { return counted(__libc_realloc(block, size)); }
void* aligned_alloc(size_t alignment, size_t size) { return counted(__libc_memalign(alignment, size)); }
}

namespace {

using Walk = void (*)(grid::Digest&);

struct Use {
  Walk walk;
  grid::Digest digest;
  int allocations = 0;
  ptrdiff_t stack = 0;
};

void* run(void* argument) {
  auto* const use = static_cast<Use*>(argument);
  const int before = allocations;
  use->walk(use->digest);
  use->allocations = allocations - before;
  return nullptr;
}

constexpr ptrdiff_t kStackLimit = 16 * 1024;

// On a thread whose stack is painted: what has lost its paint was used.
Use use_of(Walk walk) {
  alignas(4096) static uint8_t stack[16 * kStackLimit];
  constexpr uint8_t kPaint = 0xC7;
  std::fill(std::begin(stack), std::end(stack), kPaint);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack, sizeof stack);
  Use use = {walk, grid::Digest()};
  pthread_t thread{};
  if (pthread_create(&thread, &attributes, run, &use) != 0) std::abort();
  pthread_join(thread, nullptr);
  use.stack = std::end(stack) - std::find_if(std::begin(stack), std::end(stack), [](uint8_t b) { return b != kPaint; });
  return use;
}

// 102 000 integers.
void longest_pattern(grid::Digest& digest) {
  static int32_t pattern[6000 * grid::kRecord];
  static uint8_t out[1U << 20U];
  for (int32_t i = 0; i < 6000; ++i) {
    const int32_t vibration[grid::kRecord] = {4096, i, 0, 0, 7, 0, 10, 0, 2, 90, 20, 4, 50, -9, 7, 70, 3};
    std::copy_n(vibration, grid::kRecord, pattern + i * grid::kRecord);
  }
  digest.add(getLongSignalData(3, 1, pattern, out, std::size(pattern), 80000));
}

void allocate(grid::Digest& /*digest*/) {
  void* volatile block = std::malloc(1);
  std::free(block);
}

void stack_up(grid::Digest& /*digest*/) {
  volatile uint8_t big[2 * kStackLimit];
  for (volatile uint8_t& byte : big) byte = 0;
}

}  // namespace

int main() {
  use_of([](grid::Digest&) {});  // the first thread binds symbols on its stack
  const ptrdiff_t idle = use_of([](grid::Digest&) {}).stack;
  ptrdiff_t most = 0;
  const auto modest = [&](Walk walk) {
    const Use use = use_of(walk);
    const ptrdiff_t stack = use.stack - idle;
    if (stack < kStackLimit) most = std::max(most, stack);
    return stack < kStackLimit && use.allocations == 0;
  };
  bool good = !modest(allocate) && !modest(stack_up) && modest(longest_pattern);
  grid::every_profile([&] {
    for (const auto& family : grid::kFamilies) good = modest(family.walk) && good;
  });
  std::printf("%td bytes of stack at most\n", most);
  return good ? 0 : 1;
}
