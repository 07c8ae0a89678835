// Loading and calling the library leaves the host's floating-point environment as it was.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <limits>

namespace {

// Rounding mode, traps, flushing of subnormals; not the exception flags, which any arithmetic raises.
#ifdef __aarch64__
unsigned& control(fenv_t& environment) { return environment.__fpcr; }
constexpr unsigned kControlBits = ~0U;
constexpr unsigned kFlushSubnormals = 1U << 24U;
#else
unsigned& control(fenv_t& environment) { return environment.__mxcsr; }
constexpr unsigned kControlBits = ~0x3FU;
constexpr unsigned kFlushSubnormals = 0x8040U;
#endif

TEST(FloatingPoint, EnvironmentIsLeftAsItWas) {
  static uint8_t out[4096];
  for (const unsigned flush : {0U, kFlushSubnormals}) {
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_TOWARDZERO}) {
      fenv_t before, after;
      std::fesetround(rounding);
      std::fegetenv(&before);
      control(before) |= flush;
      std::fesetenv(&before);
      const volatile float smallest = std::numeric_limits<float>::min();
      EXPECT_EQ(smallest / 2 == 0, flush != 0);
      void* const library = dlopen(LRASYNTH_LIBRARY, RTLD_NOW | RTLD_LOCAL);
      ASSERT_NE(library, nullptr) << dlerror();
      const auto data = reinterpret_cast<int32_t (*)(int32_t, int32_t, uint8_t*)>(dlsym(library, "getShortSignalData"));
      EXPECT_EQ(data(50, 80, out), 0);
      EXPECT_EQ(dlclose(library), 0);
      std::fegetenv(&after);
      std::fesetenv(FE_DFL_ENV);
      EXPECT_EQ(control(after) & kControlBits, control(before) & kControlBits);
    }
  }
}

}  // namespace
