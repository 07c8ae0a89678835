// SPDX-License-Identifier: Apache-2.0
// lrasynth tone: a sine burst.
#include <memory>

#include "options.h"
#include "text.h"

namespace command {
namespace {

struct Tone {
  Profile profile;
  int32_t frequency_hz = 0;
  int32_t half_periods = 0;
  int32_t amplitude = 0;
  Outputs outputs;
};

void run(const Tone& tone) {
  tone.profile.apply();
  if (tone.frequency_hz > SAMPLE_RATE / 2) {
    throw Failure(kWrongInput, text("--frequency: %d not in range 1 to %d with --chip %d", tone.frequency_hz,
                                    SAMPLE_RATE / 2, tone.profile.chip));
  }
  const int32_t length = get_sine_wave_len(tone.frequency_hz, static_cast<float>(tone.half_periods) * 0.5F);
  check_length("--half-periods", length);
  Waveform waveform = {
      .title = text("Tone: %d Hz, %d half-periods, amplitude %d", tone.frequency_hz, tone.half_periods, tone.amplitude),
      .codes = std::vector<uint8_t>(static_cast<size_t>(length)),
  };
  sine(tone.half_periods, tone.frequency_hz, tone.amplitude, waveform.codes.data());
  write_files(tone.outputs.files(waveform));
}

}  // namespace

void add_tone(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("tone", "Render a sine burst");
  const auto tone = std::make_shared<Tone>();
  add_integer(command, "--frequency", tone->frequency_hz, "In Hz", 1, 12000)->required();
  add_integer(command, "--half-periods", tone->half_periods, "Their number", 1, 1'000'000)->required();
  add_integer(command, "--amplitude", tone->amplitude, "In sample units", 0, 127)->required();
  tone->profile.add_chip(command);
  tone->outputs.add(command)->required();
  command.footer(std::string(kOutputHelp) +
                 "Example:\n  lrasynth tone --frequency 170 --half-periods 20 --amplitude 100 --audible tone.wav");
  command.callback([tone] { run(*tone); });
}

}  // namespace command
