// Calls may run at once under a fixed profile: the bytes are those of one thread alone, and the thread sanitizer is
// silent.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <thread>
#include <vector>

#include "digest_families.h"

namespace {

uint64_t render_everything(uint32_t seed) {
  grid::Digest digest{.random = {seed}};
  for (const auto& family : grid::kFamilies) family.walk(digest);
  return digest.value;
}

TEST(Threads, RenderWhatOneThreadAloneRenders) {
  constexpr uint32_t kSeeds = 2;  // so that every request runs on four threads next to different ones
  std::array<uint64_t, kSeeds> alone{};
  for (uint32_t seed = 0; seed < kSeeds; ++seed) alone[seed] = render_everything(seed);
  EXPECT_NE(alone[0], alone[1]);
  std::array<uint64_t, 8> together{};
  std::vector<std::thread> threads;
  for (uint32_t i = 0; i < together.size(); ++i) {
    threads.emplace_back([&together, i] { together[i] = render_everything(i % kSeeds); });
  }
  for (std::thread& thread : threads) thread.join();
  for (uint32_t i = 0; i < together.size(); ++i) EXPECT_EQ(together[i], alone[i % kSeeds]) << i;
}

}  // namespace
