// SPDX-License-Identifier: Apache-2.0
// Fuzz driver for what people write: the first bytes choose chip, motor, loops and limit, the rest is a pattern's text.
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "design/advice/piece.h"
#include "design/advice/summary.h"
#include "design/base/motor.h"
#include "design/picture/plot.h"
#include "design/waveform/samples.h"

using namespace design;

namespace {

constexpr size_t kChoices = 3;  // bytes before the text

Setup setup_of(const uint8_t* bytes) {
  const int32_t chips[] = {0, LRASYNTH_CHIP_HALF_RATE, LRASYNTH_CHIP_EVENT_STREAM, 2};
  Setup setup = {.motor = motors()[bytes[0] / 4 % 4], .chip = chips[bytes[0] % 4], .boost = bytes[0] / 16 % 2};
  if (bytes[0] >= 32) setup.loops = 1 + bytes[1] % 8;
  if (bytes[0] >= 64) setup.interval_ms = bytes[1] / 8;
  if (bytes[2] < 250) setup.limit_ms = 2 * bytes[2];
  return setup;
}

void require(bool holds) {
  if (!holds) std::abort();
}

std::string codes_of(const Piece& piece) {
  std::string codes;
  write_codes(piece.waveform, [&](std::string_view bytes) { return codes += bytes, true; });
  return codes;
}

// A request is sound but for a last record that no limit allowed, and what is written is as long as what is told.
void check(const Piece& piece) {
  const Request& request = piece.score->request();
  const Playback& playback = piece.score->playback();
  const lrasynth_pattern pattern = {request.integers.data(), static_cast<int32_t>(request.integers.size()),
                                    playback.loops, playback.interval_ms, playback.limit_ms};
  const int32_t fault = lrasynth_pattern_check(&piece.waveform.profile, &pattern, nullptr);
  require(fault == 0 || piece.waveform.is_stream || (fault == LRASYNTH_ERROR_LAST_RECORD && request.is_open));
  require(static_cast<int64_t>(codes_of(piece).size()) == piece.waveform.length);
  require(size_of(piece.waveform).find('-') == std::string::npos);
  require(lines_of(piece.warnings).size() <= kMostWarningsListed + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < kChoices) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data + kChoices), size - kChoices);
  const auto [setup, file, read] = read_piece(setup_of(data), text, std::string(text));
  require(file.faults.lines(std::string(text)).empty() == (file.faults.count == 0));
  require(read.has_value() == (file.faults.count == 0));
  if (!read) return 0;
  const std::string canonical = canonical_json(*file.source);
  require(canonical_json(*read_pattern(canonical).source) == canonical);
  const Piece& piece = *read;
  if (piece.waveform.length > 200'000) return 0;
  check(piece);
  const Score& score = *piece.score;
  const auto flat = read_piece({}, flat_json(score.events(), score.profile(), score.playback()), "");
  require(flat.piece && codes_of(*flat.piece) == codes_of(piece));
  const std::string summary = summary_of(piece, {});
  if (!piece.waveform.is_stream) {
    const Motion motion(piece.waveform, {});
    plot_of(piece, &motion, Felt(piece.waveform, {}), felt_span(piece.waveform, &motion));
  }
  write_csv(piece.waveform, [](std::string_view) { return true; });
  return 0;
}
