// SPDX-License-Identifier: Apache-2.0
// The table of forms from elsewhere that patterns come in and go out in. Whatever reads or offers them goes by it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/formats/drawing.h"
#include "design/waveform/waveform.h"

namespace design {

// What was read of a text from elsewhere.
struct Import {
  std::string json = {};                 // the same as a pattern file of ours, where there are no faults
  std::vector<std::string> losses = {};  // what of it could not be taken
  Faults faults = {};                    // with their places in the text
};

// Nothing where the text is none of the table's: it is ours, or nobody's. The profile's motor says which levels of taps
// are meant by hertz.
std::optional<Import> imported(std::string_view text, const lrasynth_profile& profile);

// A form to write patterns in.
struct ExportForm {
  const char* name;    // of --format, and of the studio's exports
  const char* ending;  // of files
  const char* help;
  std::string (*write)(const Drawing& drawing, Losses& losses);
};

const std::vector<ExportForm>& export_forms();

}  // namespace design
