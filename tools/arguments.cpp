// SPDX-License-Identifier: Apache-2.0
// The values that commands were given.
#include "arguments.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>

#include "design/base/text.h"
#include "design/picture/forms.h"

namespace command {
void refuse(const std::string& words) { throw Failure(kWrongInput, words); }

std::string ending_of(const std::string& path) {
  std::string name = std::filesystem::path(path).filename();
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const std::filesystem::path file = name;
  const std::string two = file.stem().extension().string() + file.extension().string();
  const bool is_form = two.size() > file.extension().string().size() && design::form_named(two.substr(1)) != nullptr;
  return is_form ? two : file.extension().string();
}

bool Arguments::has(const std::string& option) const {
  const CLI::Option* const found = command->get_option_no_throw(option);
  return found != nullptr && found->count() > 0;
}

void Arguments::refuse_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const {
  for (const char* option : options) {
    if (idle && has(option)) refuse(option + (": does nothing " + why));
  }
}

void Arguments::note_idle(std::initializer_list<const char*> options, bool idle, const std::string& why) const {
  for (const char* option : options) {
    if (idle && has(option)) std::cerr << "lrasynth: note: " << option << ": does nothing " << why << '\n';
  }
}

design::Setup Arguments::setup() const {
  const auto given = [&](const char* option, int32_t value) {
    return has(option) ? std::optional(value) : std::nullopt;
  };
  return {.motor = given("--motor", *design::whole_number(motors.front())),
          .chip = given("--chip", chips.front()),
          .boost = given("--boost", boosts.front() == "on" ? 1 : 0),
          .loops = given("--loop", playback.loops),
          .interval_ms = given("--interval", playback.interval_ms),
          .limit_ms = given("--limit", playback.limit_ms)};
}

void Arguments::note_profiles(const std::vector<lrasynth_profile>& profiles) const {
  for (const int32_t chip : chips) {
    if (!design::is_chip(chip)) std::cerr << design::text("lrasynth: note: --chip: type %d acts as 0\n", chip);
  }
  const auto none = [&](bool (*is)(const lrasynth_profile& profile)) {
    return std::none_of(profiles.begin(), profiles.end(), [&](const auto& profile) { return is(profile); });
  };
  const std::string why = motors.size() > 1 ? "on these motors" : "on this motor";
  note_idle({"--boost"}, none(design::has_boost), why);
  note_idle({"--in-pattern"}, none(design::has_shares), why);
}

std::vector<lrasynth_profile> Arguments::profiles() const {
  std::vector<lrasynth_profile> profiles;
  for (const std::string& motor : motors) {
    for (const int32_t chip : chips) {
      for (const std::string& boost : boosts) {
        profiles.push_back(lrasynth_profile_of(chip, *design::whole_number(motor), boost == "on" ? 1 : 0));
        if (!design::has_boost(profiles.back())) break;
      }
    }
  }
  note_profiles(profiles);
  return profiles;
}

}  // namespace command
