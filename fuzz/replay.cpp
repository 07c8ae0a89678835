// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz driver over files, in place of the fuzzer: replay FILE...
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

int main(int count, char** names) {
  for (int i = 1; i < count; ++i) {
    std::ifstream file(names[i], std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(content.data()), content.size());
  }
  return count > 1 ? 0 : 1;
}
