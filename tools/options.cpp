// What the commands' arguments have in common.
#include "options.h"

#include <filesystem>
#include <limits>

#include "text.h"

namespace lrasynth {
namespace {

struct Form {
  const char* ending;
  std::string (*render)(const Waveform&);
};

std::string to_bytes(const Waveform& waveform) { return {waveform.codes.begin(), waveform.codes.end()}; }

constexpr Form kForms[] = {{".wav", to_wav}, {".svg", to_svg}, {".csv", to_csv}, {".bin", to_bytes}};

const Form* form_of(const std::string& path) {
  const std::string ending = std::filesystem::path(path).extension();
  for (const Form& form : kForms) {
    if (ending == form.ending) return &form;
  }
  return nullptr;
}

std::string check_output(const std::string& path) {
  if (path == kStandardOutput || form_of(path) != nullptr) return {};
  return path + " must end in .wav, .svg, .csv or .bin";
}

}  // namespace

CLI::Option* add_integer(CLI::App& command, const std::string& name, int32_t& value, const std::string& help,
                         int32_t least, int32_t most) {
  return command.add_option(name, value, help)->check(CLI::Range(least, most))->capture_default_str();
}

void Profile::add_motor(CLI::App& command) {
  command.add_option("--motor", motor, "Motor model")
      ->check(CLI::IsMember(std::vector<int32_t>{832, 1040, 9595, 81540}))
      ->capture_default_str();
}

void Profile::add_chip(CLI::App& command) {
  constexpr auto kLimits = std::numeric_limits<int32_t>();
  add_integer(command, "--chip", chip, "Chip type: 1 has 12000 samples a second, every other 24000", kLimits.min(),
              kLimits.max());
}

void Profile::apply() const {
  setMotorType(motor);
  setChipType(chip);
  setBoostFlg(boost ? 0 : 1);
}

CLI::Option* Outputs::add(CLI::App& command) {
  command.add_option("--format", standard_output_form, "Form of OUTPUT -")
      ->check(CLI::IsMember(std::vector<std::string>{"wav", "svg", "csv", "bin"}));
  return command
      .add_option("OUTPUT", paths, "Files to write, by ending: .wav, .svg, .csv or .bin (the bytes); - is standard output")
      ->check(CLI::Validator(check_output, ""));
}

void Outputs::write(const Waveform& waveform) const {
  std::vector<File> files;
  for (const std::string& path : paths) {
    const bool standard = path == kStandardOutput;
    if (standard && standard_output_form.empty()) {
      throw Failure(kWrongInput, "--format: OUTPUT - needs wav, svg, csv or bin");
    }
    files.push_back({path, form_of(standard ? "x." + standard_output_form : path)->render(waveform)});
  }
  write_files(files);
  for (const File& file : files) {
    if (file.path == kStandardOutput) continue;
    std::cerr << text("%s: %zu samples, %.1f ms\n", file.path.c_str(), waveform.codes.size(), waveform.length_ms());
  }
}

}  // namespace lrasynth
