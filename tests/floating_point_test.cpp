// Loading and calling the library leaves the host's floating-point environment as it was.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cfenv>
#include <cstdint>
#include <limits>
#include <vector>

namespace {

// Rounding mode, traps, flushing of subnormals; not the exception flags, which any arithmetic raises.
uint64_t control_bits(const fenv_t& environment) {
#ifdef __aarch64__
  return environment.__fpcr;
#else
  return environment.__mxcsr & ~uint64_t{FE_ALL_EXCEPT};
#endif
}

void flush_subnormals(fenv_t* environment) {
#ifdef __aarch64__
  environment->__fpcr |= 1U << 24U;
#else
  environment->__mxcsr |= 0x8040U;
#endif
}

uint64_t control_bits() {
  fenv_t environment;
  fegetenv(&environment);
  return control_bits(environment);
}

void use_library() {
  void* const library = dlopen(LRASYNTH_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  const auto length = reinterpret_cast<int32_t (*)(int32_t)>(dlsym(library, "getShortSignalDataLength"));
  const auto data = reinterpret_cast<int32_t (*)(int32_t, int32_t, uint8_t*)>(dlsym(library, "getShortSignalData"));
  for (int32_t level = 0; level <= 100; ++level) {
    std::vector<uint8_t> out(static_cast<size_t>(length(level)));
    EXPECT_EQ(data(level, 80, out.data()), 0);
  }
  EXPECT_EQ(dlclose(library), 0);
}

TEST(FloatingPoint, EnvironmentIsLeftAsItWas) {
  volatile float smallest = std::numeric_limits<float>::min();
  for (const bool flushing : {false, true}) {
    for (const int rounding : {FE_TONEAREST, FE_UPWARD, FE_TOWARDZERO}) {
      fesetround(rounding);
      fenv_t environment;
      fegetenv(&environment);
      if (flushing) flush_subnormals(&environment);
      fesetenv(&environment);
      EXPECT_EQ(smallest / 2 == 0, flushing);
      const uint64_t before = control_bits();
      use_library();
      EXPECT_EQ(control_bits(), before);
      fesetenv(FE_DFL_ENV);
    }
  }
}

}  // namespace
