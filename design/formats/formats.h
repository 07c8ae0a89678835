// SPDX-License-Identifier: Apache-2.0
// The table of formats from elsewhere that patterns come in and go out in. Whatever reads or offers them goes by it.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "design/base/motor.h"
#include "design/formats/drawing.h"
#include "design/formats/xml.h"
#include "design/pattern/file.h"
#include "design/waveform/drive.h"
#include "design/waveform/waveform.h"

namespace design {

struct Format {
  const char* name;    // of --format, and of the studio's exports
  const char* ending;  // of files
  const char* help;

  // What reads it, if it is JSON or XML from elsewhere.
  bool (*is_json)(const JsonValue& root);
  void (*read_json)(const JsonValue& root, const Tuning& tuning, Drawing& drawing);
  bool (*is_xml)(const XmlElement& root);
  void (*read_xml)(const XmlElement& root, Drawing& drawing);

  // A pattern with all its passes, whose chip renders samples. Null where the format is only read.
  std::string (*write)(const Score& score, const Source& source, Losses& losses);
};

// Ours is the first.
std::span<const Format> formats();

// Whether files of that format can be read.
bool is_read(const Format& format);

// The one of that name, and the one to write a file of that name in; null where there is none.
const Format* format_named(std::string_view name);
const Format* format_of_path(std::string_view path);

// Names, or endings, of those that can be written.
std::vector<std::string> written_formats(const char* Format::*word);

// A line for each.
std::string formats_help();

// A pattern of ours whose strengths say what is felt of it on the score's motor, so that any other is driven for the
// same. Its groups are laid out.
std::string felt_json(const Score& score, const Source& source, const Resonator& resonator, Losses& losses);

// A file of ours, or of any format that is read: what that means as a pattern of ours. Places of faults are those in
// the text; events of other formats have none. The tuning's motor says which levels of taps are meant by hertz.
PatternFile read_file(std::string_view text, const Tuning& tuning);

PatternFile file_of(Drawing drawing);

}  // namespace design
