// What calls take from their host: no heap and little stack, counted over the whole grid.
#include <pthread.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "digest_families.h"

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
}

namespace {

int allocations = 0;

// In place of the C library's, for every object in the process.
extern "C" {
void* malloc(size_t size) {
  ++allocations;
  return __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}
void* realloc(void* block, size_t size) {
  ++allocations;
  return __libc_realloc(block, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
  ++allocations;
  return __libc_memalign(alignment, size);
}
}

constexpr ptrdiff_t kStack = 256 * 1024;
constexpr ptrdiff_t kStackLimit = 16 * 1024;
constexpr uint8_t kPaint = 0xC7;

// Bytes of a painted stack that a thread running body(argument) leaves without paint.
ptrdiff_t stack_used(void* (*body)(void*), void* argument) {
  void* const mapped = mmap(nullptr, kStack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  auto* const stack = static_cast<uint8_t*>(mapped);
  std::fill_n(stack, kStack, kPaint);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstack(&attributes, stack, kStack);
  pthread_t thread{};
  if (pthread_create(&thread, &attributes, body, argument) != 0) std::abort();
  pthread_join(thread, nullptr);
  const uint8_t* const deepest = std::find_if(stack, stack + kStack, [](uint8_t byte) { return byte != kPaint; });
  const ptrdiff_t used = stack + kStack - deepest;
  munmap(mapped, kStack);
  return used;
}

struct Walk {
  void (*family)(grid::Digest&);
  grid::Digest digest;
  int allocations = 0;
};

void* run(void* argument) {
  auto* const walk = static_cast<Walk*>(argument);
  const int before = allocations;
  walk->family(walk->digest);
  walk->allocations = allocations - before;
  return nullptr;
}

// A pattern of 102 000 integers, in storage of its own.
void longest_pattern(grid::Digest& digest) {
  static int32_t pattern[6000 * grid::kRecord];
  static uint8_t out[1U << 20U];
  for (int32_t i = 0; i < 6000; ++i) {
    const int32_t vibration[grid::kRecord] = {4096, i, 0, 0, 7, 0, 10, 0, 2, 90, 20, 4, 50, -9, 7, 70, 3};
    std::copy_n(vibration, grid::kRecord, pattern + i * grid::kRecord);
  }
  if (getLongSignalBufferLength(3, 1, pattern, std::size(pattern)) > static_cast<int32_t>(sizeof out)) std::abort();
  digest.add(getLongSignalData(3, 1, pattern, out, std::size(pattern), 80000));
}

void* idle(void* /*argument*/) { return nullptr; }

void* exceed_limit(void* /*argument*/) {
  volatile uint8_t big[kStackLimit];
  for (volatile uint8_t& byte : big) byte = 0;
  return nullptr;
}

bool check(const char* name, void (*family)(grid::Digest&), ptrdiff_t thread_start) {
  Walk walk = {family, grid::Digest()};
  const ptrdiff_t used = stack_used(run, &walk) - thread_start;
  std::printf("%-16s%6td bytes of stack, %d allocations\n", name, used, walk.allocations);
  return used < kStackLimit && walk.allocations == 0;
}

// That the counters see what they look for.
bool check_counters(ptrdiff_t thread_start) {
  const int before = allocations;
  void* volatile block = std::malloc(1);
  std::free(block);
  return allocations > before && stack_used(exceed_limit, nullptr) - thread_start >= kStackLimit;
}

}  // namespace

int main() {
  stack_used(idle, nullptr);  // the first thread binds symbols on its stack
  const ptrdiff_t thread_start = stack_used(idle, nullptr);
  bool good = check_counters(thread_start) && check("longest_pattern", longest_pattern, thread_start);
  grid::every_profile([&] {
    for (const auto& family : grid::kFamilies) good &= check(family.name, family.walk, thread_start);
  });
  return good ? 0 : 1;
}
