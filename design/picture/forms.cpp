// SPDX-License-Identifier: Apache-2.0
// The table of forms.
#include "design/picture/forms.h"

#include <algorithm>

#include "design/advice/summary.h"
#include "design/base/text.h"
#include "design/picture/plot.h"

namespace design {
namespace {

void as_wav(const Piece& piece, const View&, const Sink& sink) { write_wav(piece.waveform, sink); }
void as_csv(const Piece& piece, const View&, const Sink& sink) { write_csv(piece.waveform, sink); }
void as_felt(const Piece& piece, const View& view, const Sink& sink) {
  write_felt_csv(Felt(piece.waveform, view.resonator), sink);
}
void as_codes(const Piece& piece, const View&, const Sink& sink) { write_codes(piece.waveform, sink); }
void as_json(const Piece& piece, const View&, const Sink& sink) { sink(canonical_json(*piece.source)); }
void as_flat(const Piece& piece, const View&, const Sink& sink) {
  sink(flat_json(piece.score->events(), piece.score->profile(), piece.score->playback()));
}
void as_c(const Piece& piece, const View&, const Sink& sink) { sink(c_array(piece.score->request())); }
void as_summary(const Piece& piece, const View& view, const Sink& sink) { sink(summary_of(piece, view.resonator)); }

void as_picture(const Piece& piece, const View& view, const Sink& sink) {
  if (const auto shown = shown_span(piece, view))
    sink(plot_of(piece, view.motion, Felt(piece.waveform, view.resonator), *shown));
}

// clang-format off
constexpr Form kForms[] = {
    {"wav", "mono, 16 bits, the amplitude in the upper byte; with --audible resampled to 48000 samples a second",
     false, false, true, true, as_wav},
    {"svg", "a plot", true, false, true, false, as_picture},
    {"csv", "number, time in ms, sample code and amplitude of every sample", true, true, true, true, as_csv},
    {"felt.csv", "what is felt, estimated: time in ms, dB above threshold and percent, a row each 5 ms", true, false, true,
     false, as_felt},
    {"bin", "the sample codes", false, true, true, true, as_codes},
    {"json", "", true, true, false, false, as_json},
    {"flat", "", true, true, false, false, as_flat},
    {"c", "", true, true, false, false, as_c},
    {"summary", "", true, true, true, false, as_summary},
};
// clang-format on

bool is_file_form(const Form& form) { return form.help[0] != '\0'; }

}  // namespace

const Form* form_named(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& form) { return form.name == name; });
  return found == std::end(kForms) ? nullptr : found;
}

bool suits(const Form& form, const Piece& piece) {
  return (form.of_streams || !piece.waveform.is_stream) && (form.of_taps || piece.score != nullptr);
}

std::vector<std::string> file_forms(const char* before, bool of_streams) {
  std::vector<std::string> names;
  for (const Form& form : kForms) {
    if (is_file_form(form) && (form.of_streams || !of_streams)) names.push_back(before + std::string(form.name));
  }
  return names;
}

std::string forms_help() {
  std::string lines = "OUTPUT:\n";
  for (const Form& form : kForms) {
    if (is_file_form(form)) lines += text("  .%s  %s\n", form.name, form.help);
  }
  return lines;
}

std::optional<Span> shown_span(const Piece& piece, const View& view) {
  const Span span = part_of(felt_span(piece.waveform, view.motion), view.from_ms, view.to_ms);
  return span.length() > 0 ? std::optional(span) : std::nullopt;
}

}  // namespace design
