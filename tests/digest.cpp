// SPDX-License-Identifier: Apache-2.0
// Prints a digest of what every call gives: two builds that print the same render the same bytes.
#include "digest.h"

namespace {

void print(const char* name, const Digest& digest) {
  std::printf("%-31s%016llx\n", name, static_cast<unsigned long long>(digest.value));
}

// Of the platform's sine to its last bit: the one line in which platforms may differ.
void print_libm() {
  Digest digest;
  for (int32_t i = 0; i < 100000; ++i) {
    const double exact = std::sin(static_cast<double>(i) * 0.0123);
    const auto coarse = static_cast<float>(exact);
    digest.result(coarse);
    digest.result(static_cast<float>(exact - static_cast<double>(coarse)));
  }
  print("libm", digest);
}

}  // namespace

int main() {
  every_call(12, [](const char* name, const auto& walk) {
    Digest digest;
    every_profile([&] { walk(digest); });
    print(name, digest);
  });
  print_libm();
}
