// SPDX-License-Identifier: Apache-2.0
// The forms in which a piece can be had. Whatever offers them (endings, options, help, exports) goes by this table.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "design/advice/piece.h"
#include "design/waveform/response.h"
#include "design/waveform/samples.h"

namespace design {

// What a form shows beside the samples.
struct View {
  const Motion* motion = nullptr;  // drawn where it is given
  Resonator resonator = {};        // of numbers and of what is felt
  double from_ms = 0;              // of pictures
  double to_ms = 0;                // 0: the end
};

struct Form {
  const char* name;  // and a file's ending
  const char* help;  // empty: no file's form
  bool is_text;      // which a terminal can show
  bool of_streams;   // which may be of event streams
  bool of_taps;      // which may be of taps and tones
  bool in_blocks;    // which comes piece by piece, since it may be long
  void (*write)(const Piece& piece, const View& view, const Sink& sink);
};

// The form of that name, null where there is none.
const Form* form_named(std::string_view name);
// Whether the piece can be had in it.
bool suits(const Form& form, const Piece& piece);

// The names of files' forms, of all or of those for event streams, with something before each.
std::vector<std::string> file_forms(const char* before, bool of_streams = false);

// "OUTPUT:", with a line for each form of a file.
std::string forms_help();

// The stretch of time that a picture shows; nothing where none of it lies there.
std::optional<Span> shown_span(const Piece& piece, const View& view);

}  // namespace design
