// Runs a fuzz driver over files, in place of the fuzzer: replay FILE...
#include <cstdint>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size);

int main(int count, char** names) {
  for (int i = 1; i < count; ++i) {
    std::ifstream file(names[i], std::ios::binary);
    if (!file) return 1;
    const std::vector<char> content(std::istreambuf_iterator<char>(file), {});
    const std::vector<uint8_t> bytes(content.begin(), content.end());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  return count > 1 ? 0 : 1;
}
