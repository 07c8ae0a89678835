// SPDX-License-Identifier: Apache-2.0
// lrasynth tap: one short signal.
#include <memory>

#include "options.h"
#include "text.h"

namespace command {
namespace {

struct Tap {
  Profile profile;
  int32_t level = 50;
  int32_t intensity = 80;
  Outputs outputs;
};

// The four segments of motor 1040; what the stored bursts of the other motors are made of is not told.
std::vector<Section> segments(int32_t level) {
  if (getMotorType() != LRASYNTH_MOTOR_1040) return {};
  const bool mid = getA1(level, 100) != 0;  // only the mid-level shape sounds F1
  const int32_t drive_hz = getFrequency(level);
  const auto ms = [](int32_t hz, float cycles) { return 1000.0 * get_sine_wave_len(hz, cycles) / SAMPLE_RATE; };
  const struct {
    double length_ms;
    std::string label;
  } rows[] = {
      {ms(drive_hz, mid ? 1.0F : getC0(level)), text("drive, %d Hz", drive_hz)},
      {static_cast<double>(getZeroTime(level)), "zero time"},
      {ms(getF1(level), mid ? 0.5F : getC1()), mid ? text("F1, %d Hz", getF1(level)) : "F1, silent"},
      {ms(getF2(), mid ? 0.5F : getC2()), mid ? text("F2, %d Hz", getF2()) : "F2, silent"},
  };
  std::vector<Section> sections;
  double start_ms = 0;
  for (const auto& row : rows) {
    sections.push_back({start_ms, start_ms + row.length_ms, row.label, sections.size() % 2 == 0});
    start_ms += row.length_ms;
  }
  return sections;
}

void run(const Tap& tap) {
  tap.profile.apply();
  std::vector<uint8_t> codes(static_cast<size_t>(getShortSignalDataLength(tap.level)));
  if (getShortSignalData(tap.level, tap.intensity, codes.data()) != 0) {
    throw Failure(kCannotRender, text("--motor: model %d has no short signals", tap.profile.motor));
  }
  const Waveform waveform = {
      .title = text("Tap: motor %d, level %d, intensity %d %%", tap.profile.motor, tap.level, tap.intensity),
      .codes = codes,
      .sections = segments(tap.level),
  };
  write_files(tap.outputs.files(waveform));
}

}  // namespace

void add_tap(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("tap", "Render one tap");
  const auto tap = std::make_shared<Tap>();
  tap->profile.add_motor(command);
  add_integer(command, "--level", tap->level, "Character of the tap", 0, 100)->capture_default_str();
  add_integer(command, "--intensity", tap->intensity, "Strength in percent", 0, 100)->capture_default_str();
  tap->profile.add_chip(command);
  tap->outputs.add(command)->required();
  command.footer(std::string(kOutputHelp) +
                 "Example:\n  lrasynth tap --motor 1040 --level 50 --intensity 80 tap.wav tap.svg");
  command.callback([tap] { run(*tap); });
}

}  // namespace command
