// SPDX-License-Identifier: Apache-2.0
// Samples and event streams as bytes of files.
#include "design/waveform/samples.h"

#include <charconv>
#include <span>
#include <vector>

#include "design/base/text.h"

namespace design {
namespace {

constexpr size_t kLongestLine = 64;

char* write_number(char* at, int64_t number) { return std::to_chars(at, at + 20, number).ptr; }

// In whole ten-thousandths, rounded; printf takes ten times as long.
char* write_ms(char* at, int64_t sample, int32_t sample_rate) {
  constexpr int64_t kUnits = 10'000;
  const int64_t rounded = (2 * 1000 * kUnits * sample + sample_rate) / (2 * int64_t{sample_rate});
  at = write_number(at, rounded / kUnits);
  *at++ = '.';
  for (int64_t unit = kUnits / 10; unit > 0; unit /= 10) *at++ = static_cast<char>('0' + rounded / unit % 10);
  return at;
}

std::string csv_lines(int64_t first, std::span<const uint8_t> codes, int32_t sample_rate) {
  std::string lines(codes.size() * kLongestLine, '\0');
  char* at = lines.data();
  for (const uint8_t code : codes) {
    at = write_number(at, first);
    *at++ = ',';
    at = write_ms(at, first++, sample_rate);
    *at++ = ',';
    at = write_number(at, code);
    *at++ = ',';
    at = write_number(at, amplitude(code));
    *at++ = '\n';
  }
  lines.resize(static_cast<size_t>(at - lines.data()));
  return lines;
}

std::string little_endian(uint32_t number, size_t size) {
  std::string bytes;
  for (; bytes.size() < size; number >>= 8U) bytes += static_cast<char>(number & 0xFFU);
  return bytes;
}

std::string stream_csv(const std::vector<uint8_t>& stream) {
  const auto at16 = [&](size_t i) { return stream[i] + 256 * stream[i + 1]; };
  std::string lines = "event,delta_ms,strength,duration_ms\n";
  for (size_t i = 2; i < stream.size(); i += 6) {
    lines += text("%zu,%d,%d,%d\n", i / 6 + 1, at16(i + 1), stream[i + 3], at16(i + 4));
  }
  return lines + text("total,,,%d\n", at16(0));
}

}  // namespace

void write_csv(const Waveform& waveform, const Sink& sink) {
  if (waveform.is_stream) {
    std::vector<uint8_t> stream(static_cast<size_t>(waveform.length));
    waveform.read(0, stream);
    sink(stream_csv(stream));
    return;
  }
  sink("sample,time_ms,code,amplitude\n");
  for_blocks(waveform, [&](int64_t first, std::span<const uint8_t> codes) {
    return sink(csv_lines(first, codes, waveform.profile.sample_rate));
  });
}

void write_codes(const Waveform& waveform, const Sink& sink) {
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    return sink({reinterpret_cast<const char*>(codes.data()), codes.size()});
  });
}

std::string wav_head(int32_t sample_rate, int64_t samples) {
  const auto rate = static_cast<uint32_t>(sample_rate);
  const auto bytes = static_cast<uint32_t>(2 * samples);
  const std::string format = little_endian(1, 2) + little_endian(1, 2) + little_endian(rate, 4) +  // PCM, mono
                             little_endian(2 * rate, 4) + little_endian(2, 2) + little_endian(16, 2);
  return "RIFF" + little_endian(36 + bytes, 4) + "WAVEfmt " + little_endian(16, 4) + format + "data" +
         little_endian(bytes, 4);
}

void write_wav(const Waveform& waveform, const Sink& sink) {
  sink(wav_head(waveform.profile.sample_rate, waveform.length));
  for_blocks(waveform, [&](int64_t, std::span<const uint8_t> codes) {
    std::string samples;
    samples.reserve(2 * codes.size());
    for (const uint8_t code : codes) samples.append({'\0', static_cast<char>(code)});
    return sink(samples);
  });
}

std::string size_of(const Waveform& waveform) {
  const int64_t length = waveform.length;
  if (waveform.is_stream) return counted(length, "byte") + " of event stream";
  return counted(length, "sample") + text(", %.1f ms", waveform.length_ms());
}

}  // namespace design
