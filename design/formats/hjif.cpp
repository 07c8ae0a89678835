// SPDX-License-Identifier: Apache-2.0
// HJIF: perceptions have channels, these have bands of frequencies, and these have effects of keyframes.
#include "design/formats/hjif.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "design/base/text.h"
#include "design/formats/line.h"
#include "design/formats/members.h"

namespace design {
namespace {

constexpr double kMostHz = 1000;

class HjifReader {
 public:
  HjifReader(const Tuning& tuning, Drawing& drawing) : tuning_(tuning), drawing_(drawing), members_(drawing) {}

  void read(const JsonValue& root) {
    const auto timescale = members_.number(root, "timescale");
    if (timescale && !(*timescale >= 1)) {
      const JsonValue& written = *root.member("timescale");
      return drawing_.fault(written.place, "timescale: must be 1 or more, not " + named(written));
    }
    ms_per_tick_ = 1000 / timescale.value_or(1000);
    const JsonValue* const perceptions = members_.required_list(root, "perceptions");
    if (perceptions == nullptr) return;
    for (const JsonValue& perception : perceptions->items) read_perception(perception);
    if (!others_.empty()) {
      constexpr size_t kMostNamed = 4;
      const size_t more = others_.size() - std::min(others_.size(), kMostNamed);
      others_.resize(others_.size() - more);
      const std::string rest = more > 0 ? text(" and %zu more", more) : "";
      drawing_.losses.say("of several channels the first is read, not " + listed(others_, "and") + rest);
    }
  }

 private:
  void read_perception(const JsonValue& json) {
    ++perception_;
    if (!members_.is_object(json, "a perception")) return;
    const std::string modality = members_.word(json, "perception_modality");
    if (modality != "Vibrotactile" && modality != "Vibration") {
      return drawing_.losses.add("perception", "left out, being no vibration");
    }
    library_.clear();
    if (const JsonValue* const library = members_.list(json, "effect_library")) {
      for (const JsonValue& effect : library->items) {
        if (!members_.is_object(effect, "an effect")) return;
        if (const auto id = members_.number(effect, "id")) library_.emplace(*id, &effect);
      }
    }
    const JsonValue* const channels = members_.list(json, "channels");
    if (channels == nullptr) return;
    size_t number = 0;
    for (const JsonValue& channel : channels->items) {
      ++number;
      if (!members_.is_object(channel, "a channel") || !has_effects(channel)) continue;
      if (is_read_) {
        others_.push_back(text("channel %zu of perception %zu", number, perception_));
      } else {
        read_channel(channel);
      }
      is_read_ = true;
    }
  }

  bool has_effects(const JsonValue& channel) {
    const JsonValue* const bands = members_.list(channel, "bands");
    if (bands == nullptr) return false;
    return std::any_of(bands->items.begin(), bands->items.end(), [](const JsonValue& band) {
      const JsonValue* const effects = band.member("effects");
      return effects != nullptr && !effects->items.empty();
    });
  }

  void read_channel(const JsonValue& json) {
    gain_ = members_.in_range(members_.number(json, "gain"), 0, HUGE_VAL, json, "gain").value_or(1);
    for (const JsonValue& band : json.member("bands")->items) {
      if (members_.is_object(band, "a band")) read_band(band);
    }
    drawing_.losses.add("keyframe", "stronger than full with the channel's gain, and cut", loud_);
  }

  void read_band(const JsonValue& json) {
    const std::string type = members_.word(json, "band_type");
    if (type == "WaveletWave") return drawing_.losses.add("wavelet band", "left out");
    is_transient_ = type == "Transient";
    if (!is_transient_ && type != "Curve" && type != "VectorialWave") {
      return drawing_.losses.add("unknown band", "left out");
    }
    const std::string curve = members_.word(json, "curve_type");
    if (!is_transient_ && !curve.empty() && curve != "Linear" && curve != "Unknown") {
      drawing_.losses.add("band", "read as straight lines");
    }
    const JsonValue* const effects = members_.list(json, "effects");
    if (effects == nullptr) return;
    for (const JsonValue& effect : effects->items) {
      if (members_.is_object(effect, "an effect")) read_effect(effect);
    }
  }

  double position_ms(const JsonValue& json, const char* name) {
    return ms_per_tick_ * members_.in_range(members_.number(json, name), 0, HUGE_VAL, json, name).value_or(0);
  }

  void read_effect(const JsonValue& json) {
    const double start_ms = position_ms(json, "position");
    const std::string type = members_.word(json, "effect_type");
    if (type == "Reference") {
      if (const JsonValue* const effect = referred(json)) read_basis(*effect, start_ms);
    } else if (type == "Composite") {
      drawing_.losses.add("composite effect", "left out");
    } else {
      read_basis(json, start_ms);
    }
  }

  const JsonValue* referred(const JsonValue& json) {
    const auto id = members_.required_number(json, "id");
    if (!id) return nullptr;
    const auto found = library_.find(*id);
    const JsonValue& written = *json.member("id");
    if (found == library_.end()) {
      drawing_.fault(written.place, "id: is no effect of the library: " + named(written));
      return nullptr;
    }
    const std::string type = members_.word(*found->second, "effect_type");
    if (type != "Reference" && type != "Composite") return found->second;
    drawing_.losses.add("reference", "left out, leading to no basic effect");
    return nullptr;
  }

  struct Keyframe {
    double ms;
    std::optional<double> strength;  // 0..1
    std::optional<double> hz;
  };

  void read_basis(const JsonValue& json, double start_ms) {
    const JsonValue* const list = members_.list(json, "keyframes");
    if (list == nullptr) return;
    constexpr size_t kMostKeyframes = 1'000'000;
    keyframes_ += list->items.size();
    if (keyframes_ > kMostKeyframes) {
      if (!is_full_) drawing_.fault(json.place, "has too many keyframes with those before it");
      is_full_ = true;
      return;
    }
    if (!is_transient_) note_shape(json);
    std::vector<Keyframe> keyframes;
    for (const JsonValue& keyframe : list->items) {
      if (!members_.is_object(keyframe, "a keyframe")) return;
      keyframes.push_back(keyframe_of(keyframe, start_ms));
    }
    std::stable_sort(keyframes.begin(), keyframes.end(), [](auto& a, auto& b) { return a.ms < b.ms; });
    is_transient_ ? add_taps(keyframes) : add_curve(keyframes);
  }

  void note_shape(const JsonValue& json) {
    const std::string shape = members_.word(json, "base_signal");
    if (!shape.empty() && shape != "Sine") drawing_.losses.add("effect", "taken for a sine");
    if (members_.number(json, "phase").value_or(0) != 0) drawing_.losses.add("phase", "left out");
  }

  Keyframe keyframe_of(const JsonValue& json, double start_ms) {
    Keyframe keyframe = {.ms = exact_ms(start_ms + position_ms(json, "relative_position")), .strength = {}, .hz = {}};
    constexpr const char* kStrength = "amplitude_modulation";
    if (auto strength = members_.in_range(members_.number(json, kStrength), 0, 1, json, kStrength)) {
      *strength *= gain_;
      loud_ += *strength > 1 ? 1 : 0;
      keyframe.strength = std::min(1.0, *strength);
    }
    constexpr const char* kHz = "frequency_modulation";
    const auto hz = members_.in_range(members_.number(json, kHz), 0, HUGE_VAL, json, kHz);
    if (hz) keyframe.hz = std::clamp(*hz, 1.0, kMostHz);
    return keyframe;
  }

  void add_taps(const std::vector<Keyframe>& keyframes) {
    for (const Keyframe& keyframe : keyframes) {
      const double offset = keyframe.hz ? tuning_.nearest(*keyframe.hz) : 0;
      drawing_.taps.push_back(
          {keyframe.ms, 100 * keyframe.strength.value_or(std::min(1.0, gain_)), 100 * sharpness_of_offset(offset)});
    }
  }

  // Keyframes may give one of strength and frequency alone.
  void add_curve(const std::vector<Keyframe>& keyframes) {
    if (keyframes.empty()) return;
    if (keyframes.size() < 2) return drawing_.losses.add("effect", "left out, having a single keyframe");
    ValueLine strength(std::min(1.0, gain_));
    ValueLine hz(0);
    const auto add = [](ValueLine& line, double ms, const std::optional<double>& value) {
      if (!value) return;
      if (line.points().empty()) line = ValueLine(*value);
      line.to(ms, *value);
    };
    for (const Keyframe& keyframe : keyframes) {
      add(strength, keyframe.ms, keyframe.strength);
      add(hz, keyframe.ms, keyframe.hz);
    }
    const bool has_hz = !hz.points().empty();
    const ValueLine& place = has_hz ? hz : middle_;
    drawing_.curves.push_back(curve_of(strength, place, keyframes.front().ms, keyframes.back().ms, has_hz));
  }

  const Tuning& tuning_;
  Drawing& drawing_;
  MemberReader members_;
  const ValueLine middle_{0.5};
  double ms_per_tick_ = 1;
  double gain_ = 1;  // of the channel
  bool is_transient_ = false;
  bool is_read_ = false;  // a channel
  bool is_full_ = false;
  size_t perception_ = 0;
  size_t keyframes_ = 0;
  int64_t loud_ = 0;
  std::map<double, const JsonValue*> library_;
  std::vector<std::string> others_;  // channels
};

}  // namespace

bool is_hjif(const JsonValue& root) { return root.member("perceptions") != nullptr; }

void read_hjif(const JsonValue& root, const Tuning& tuning, Drawing& drawing) {
  HjifReader(tuning, drawing).read(root);
}

}  // namespace design
