// Prints a digest of every family of results: two builds that print the same render the same bytes.
#include <cstdio>

#include "digest_families.h"

namespace {

void print(const char* name, const grid::Digest& digest) {
  std::printf("%-13s%016llx\n", name, static_cast<unsigned long long>(digest.value));
}

// Of the platform's sine to its last bit: the one line in which platforms may differ.
void print_libm() {
  grid::Digest digest;
  for (int32_t i = 0; i < 100000; ++i) {
    const double exact = std::sin(static_cast<double>(i) * 0.0123);
    const auto coarse = static_cast<float>(exact);
    digest.add(coarse);
    digest.add(static_cast<float>(exact - static_cast<double>(coarse)));
  }
  print("libm", digest);
}

}  // namespace

int main() {
  for (const auto& family : grid::kFamilies) {
    grid::Digest digest;
    grid::every_profile([&] { family.walk(digest); });
    print(family.name, digest);
  }
  print_libm();
}
