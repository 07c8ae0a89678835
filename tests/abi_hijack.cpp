// A host with functions of the library's names: linked into the digest program, they must not change what the library
// renders by itself.
#include <cstdint>

extern "C" {
int32_t sine(int32_t /*halfPeriods*/, int32_t /*frequencyHz*/, int32_t /*amplitude*/, uint8_t* /*out*/) { return 7; }
int32_t getF1(int32_t /*level*/) { return 77; }
int32_t getFrequency(int32_t /*level*/) { return 777; }
}
