// SPDX-License-Identifier: Apache-2.0
// Calls may run at once under a fixed profile: the bytes are those of one thread alone, and the thread sanitizer is
// silent.
#include <gtest/gtest.h>

#include <array>
#include <thread>

#include "digest.h"

namespace {

uint64_t render_everything(uint32_t seed) {
  Digest digest{.state = seed};
  every_call(8, [&](const char* /*name*/, const auto& walk) { walk(digest); });
  return digest.value;
}

TEST(Threads, RenderWhatOneThreadAloneRenders) {
  // Two seeds, so that every request runs on four threads next to different ones.
  const uint64_t alone[] = {render_everything(0), render_everything(1)};
  EXPECT_NE(alone[0], alone[1]);
  std::array<uint64_t, 8> together{};
  std::vector<std::thread> threads;
  for (uint32_t i = 0; i < together.size(); ++i) {
    threads.emplace_back([&together, i] { together[i] = render_everything(i % 2); });
  }
  for (std::thread& thread : threads) thread.join();
  for (uint32_t i = 0; i < together.size(); ++i) EXPECT_EQ(together[i], alone[i % 2]) << i;
}

}  // namespace
