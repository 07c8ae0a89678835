// SPDX-License-Identifier: Apache-2.0
// lrasynth tap, tone and sheet: single signals, and the character of a motor model in one picture.
#include <memory>

#include "design/motor.h"
#include "design/sheet.h"
#include "design/text.h"
#include "options.h"

namespace command {
namespace {

using design::text;

struct Signal {
  Device device;
  Tap tap;
  int32_t frequency_hz = 0;
  int32_t half_periods = 0;
  int32_t amplitude = 0;
  std::vector<int32_t> levels = {0, 25, 50, 75, 100};
  std::string picture;
  Outputs outputs;
};

void run_tone(const CLI::App& command, const Signal& signal) {
  const lrasynth_profile profile = signal.device.profile(command);
  if (signal.frequency_hz > profile.sample_rate / 2) {
    throw Failure(kWrongInput, text("--frequency: must be a whole number from 1 to %d with --chip %d, not %d",
                                    profile.sample_rate / 2, profile.chip_type, signal.frequency_hz));
  }
  check_length("--half-periods", 500.0 * signal.half_periods / signal.frequency_hz);
  signal.outputs.finish(command,
                        design::tone_piece(profile, signal.frequency_hz, signal.half_periods, signal.amplitude));
}

void run_sheet(const CLI::App& command, const Signal& signal) {
  const lrasynth_profile profile = signal.device.profile(command);
  const bool has_taps = design::has_taps(profile);
  refuse_idle(command, {"--levels", "--intensity"}, !has_taps, "on this motor");
  for (const int32_t level : has_taps ? signal.levels : std::vector<int32_t>()) {
    const Tap tap = {level, signal.tap.intensity, signal.tap.in_pattern};
    signal.outputs.view.report(tap_piece(profile, tap), text("level %d: ", level));
  }
  const design::Sheet sheet = {profile, signal.levels, signal.tap.intensity, signal.tap.in_pattern};
  write_files({text_file(signal.picture, sheet_of(sheet), title_of(sheet))});
}

}  // namespace

void add_tap(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("tap", "Render one tap");
  const auto signal = std::make_shared<Signal>();
  signal->device.add(command, true, false);
  signal->tap.add(command, true);
  signal->outputs.add(command);
  command.footer(kOutputHelp + std::string("Example:\n  lrasynth tap --level 50 --intensity 80 --response tap.svg"));
  command.callback(
      [signal, &command] { signal->outputs.finish(command, tap_piece(signal->device.profile(command), signal->tap)); });
}

void add_tone(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("tone", "Render a sine burst");
  const auto signal = std::make_shared<Signal>();
  add(command, "--frequency", signal->frequency_hz, "In Hz", number_in(1, 12000))->required()->default_str("");
  add(command, "--half-periods", signal->half_periods, "Number", number_in(1, 1'000'000))->required()->default_str("");
  add(command, "--amplitude", signal->amplitude, "In sample units", number_in(0, 127))->required()->default_str("");
  signal->device.add(command, false, false);
  signal->outputs.add(command);
  command.footer(
      kOutputHelp +
      std::string("Example:\n  lrasynth tone --frequency 170 --half-periods 20 --amplitude 100 --audible tone.wav"));
  command.callback([signal, &command] { run_tone(command, *signal); });
}

void add_sheet(CLI::App& app) {
  CLI::App& command = *app.add_subcommand("sheet", "Draw a motor model's taps and curves");
  const auto signal = std::make_shared<Signal>();
  signal->device.add(command, true, true);
  add(command, "--levels", signal->levels, "Levels, separated by commas", number_in(0, 100));
  signal->tap.add(command, false);
  command.add_flag("--strict", signal->outputs.view.strict, "Take warnings for faults");
  add_files(command, "OUTPUT", signal->picture, "The .svg file to write; - is standard output")
      ->check(output_in(".svg"))
      ->required();
  command.footer("Example:\n  lrasynth sheet --motor 1040 --levels 0,20,40,60,80,100 sheet.svg");
  command.callback([signal, &command] { run_sheet(command, *signal); });
}

}  // namespace command
