// SPDX-License-Identifier: Apache-2.0
// What the commands' arguments have in common.
#include "options.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "text.h"

namespace command {
namespace {

struct Form {
  const char* ending;
  std::string (*render)(const Waveform&);
};

std::string to_bytes(const Waveform& waveform) { return {waveform.codes.begin(), waveform.codes.end()}; }

constexpr Form kForms[] = {{".wav", to_wav}, {".svg", to_svg}, {".csv", to_csv}, {".bin", to_bytes}};

const Form* find_form(const std::string& ending) {
  const auto* const found =
      std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& form) { return form.ending == ending; });
  return found == std::end(kForms) ? nullptr : found;
}

std::string check_output(const std::string& path) {
  const bool known = path == kStandardOutput || find_form(std::filesystem::path(path).extension()) != nullptr;
  return known ? "" : path + " must end in .wav, .svg, .csv or .bin, or be -";
}

}  // namespace

const char* const kOutputHelp = R"(OUTPUT:
  .wav  mono, 16 bits, the amplitude in the upper byte
  .svg  a plot
  .csv  number, time in ms, sample code and amplitude of every sample
  .bin  the sample codes
  -     standard output, as --format says

)";

CLI::Option* add_integer(CLI::App& command, const std::string& name, int32_t& value, const std::string& help,
                         int32_t least, int32_t most) {
  return command.add_option(name, value, help)
      ->check(quiet(CLI::Range(least, most)))
      ->type_name(text("%d..%d", least, most));
}

void Profile::add_motor(CLI::App& command) {
  command.add_option("--motor", motor, "Motor model")
      ->check(quiet(CLI::IsMember(
          std::vector<int32_t>{LRASYNTH_MOTOR_832, LRASYNTH_MOTOR_1040, LRASYNTH_MOTOR_9595, LRASYNTH_MOTOR_81540})))
      ->type_name("832|1040|9595|81540")
      ->capture_default_str();
}

void Profile::add_chip(CLI::App& command) {
  using Limits = std::numeric_limits<int32_t>;
  add_integer(command, "--chip", chip, "Chip type: 1 has 12000 samples a second, every other 24000; 11 plays events",
              Limits::min(), Limits::max())
      ->type_name("INTEGER")
      ->capture_default_str();
}

void Profile::add_boost(CLI::App& command) {
  command.add_option("--boost", boost, "Boost of motor 832")
      ->check(quiet(CLI::IsMember(std::vector<std::string>{"on", "off"})))
      ->type_name("on|off")
      ->capture_default_str();
}

void Profile::apply() const {
  setMotorType(motor);
  setChipType(chip);
  setBoostFlg(boost == "on" ? 0 : 1);
}

CLI::Option* Outputs::add(CLI::App& command) {
  command.add_flag("--audible", audible, "WAV at 48000 samples a second, for players that refuse less");
  command.add_option("--format", standard_output_form, "Form of OUTPUT -")
      ->check(quiet(CLI::IsMember(std::vector<std::string>{"wav", "svg", "csv", "bin"})))
      ->type_name("wav|svg|csv|bin");
  return command.add_option("OUTPUT", paths, "Files to write, in the form that their ending says, see below")
      ->check(CLI::Validator(check_output, ""))
      ->type_name("");
}

std::string Outputs::form(const std::string& path) const {
  if (path != kStandardOutput) return std::filesystem::path(path).extension();
  if (standard_output_form.empty()) throw Failure(kWrongInput, "--format: OUTPUT - needs wav, svg, csv or bin");
  return "." + standard_output_form;
}

std::vector<File> Outputs::files(const Waveform& waveform) const {
  const std::string note = text("%zu samples, %.1f ms", waveform.codes.size(), waveform.length_ms());
  if (!standard_output_form.empty() && std::find(paths.begin(), paths.end(), kStandardOutput) == paths.end()) {
    throw Failure(kWrongInput, "--format: only for OUTPUT -");
  }
  std::vector<File> files;
  for (const std::string& path : paths) {
    const Form* const rendered = find_form(form(path));
    const bool resampled = audible && rendered->render == to_wav;
    files.push_back({path, resampled ? to_audible_wav(waveform) : rendered->render(waveform), note});
  }
  return files;
}

void check_length(const std::string& options, int32_t samples) {
  if (samples > 0 && samples / (SAMPLE_RATE / 1000) <= kLongestMs) return;
  throw Failure(kWrongInput, text("%s: the waveform may last %d ms at most", options.c_str(), kLongestMs));
}

}  // namespace command
