// SPDX-License-Identifier: Apache-2.0
// What a pattern is made for and played with.
#include "design/base/text.h"
#include "design/pattern/file.h"

namespace design {
namespace {

struct Setting {
  const char* name;
  std::optional<int32_t> Setup::*value;
  const char* unit;
};

constexpr Setting kSettings[] = {{"motor", &Setup::motor, ""},
                                 {"chip", &Setup::chip, ""},
                                 {"boost", &Setup::boost, nullptr},
                                 {"loops", &Setup::loops, ""},
                                 {"interval", &Setup::interval_ms, " ms"},
                                 {"limit", &Setup::limit_ms, " ms"}};

std::string words_of(const Setting& setting, int32_t value) {
  if (setting.unit == nullptr) return value != 0 ? "on" : "off";
  return text("%d", value) + setting.unit;
}

}  // namespace

lrasynth_profile Setup::profile() const {
  return lrasynth_profile_of(chip.value_or(0), motor.value_or(LRASYNTH_MOTOR_1040), boost.value_or(1));
}

Playback Setup::playback() const {
  const Playback usual;
  return {loops.value_or(usual.loops), interval_ms.value_or(usual.interval_ms), limit_ms.value_or(usual.limit_ms)};
}

Setup merged(const Setup& asked, const Setup& of_file) {
  Setup setup;
  for (const Setting& setting : kSettings) {
    const std::optional<int32_t> value = asked.*setting.value;
    setup.*setting.value = value ? value : of_file.*setting.value;
  }
  return setup;
}

std::vector<std::string> overrides(const Setup& asked, const Setup& of_file) {
  std::vector<std::string> lines;
  for (const Setting& setting : kSettings) {
    const std::optional<int32_t> wanted = asked.*setting.value;
    const std::optional<int32_t> written = of_file.*setting.value;
    if (!wanted || !written || *wanted == *written) continue;
    lines.push_back(setting.name + (" " + words_of(setting, *wanted)) + " overrides the file's " +
                    words_of(setting, *written));
  }
  return lines;
}

}  // namespace design
