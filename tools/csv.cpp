// SPDX-License-Identifier: Apache-2.0
// The CSV form: a line per sample.
#include "output.h"
#include "text.h"

namespace command {

std::string to_csv(const Waveform& waveform) {
  std::string lines = "sample,time_ms,code,amplitude\n";
  for (size_t i = 0; i < waveform.codes.size(); ++i) {
    const uint8_t code = waveform.codes[i];
    lines += text("%zu,%.4f,%d,%d\n", i, waveform.ms_of(i), code, amplitude(code));
  }
  return lines;
}

}  // namespace command
