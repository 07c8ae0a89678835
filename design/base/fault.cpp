// SPDX-License-Identifier: Apache-2.0
// Places counted, and faults as lines.
#include "design/base/fault.h"

#include "design/base/text.h"

namespace design {

Place Places::at(size_t byte) {
  for (; counted_ < byte; ++counted_) {
    const bool continues = (static_cast<uint8_t>(text_[counted_]) & 0xC0) == 0x80;
    if (text_[counted_] == '\n') {
      place_ = {place_.line + 1, 1};
    } else if (!continues) {
      ++place_.column;
    }
  }
  return place_;
}

std::string EventName::words() const { return text("event %d", entry) + inside; }

std::string line_of(const Fault& fault, const std::string& file) {
  std::string line = file + ":";
  if (fault.place.line > 0) line += text("%zu:%zu:", fault.place.line, fault.place.column);
  if (fault.event.entry > 0) line += " " + fault.event.words() + ":";
  return line + " " + fault.what;
}

void Faults::add(Fault fault) {
  if (++count <= kMostListed) listed.push_back(std::move(fault));
}

std::vector<std::string> Faults::lines(const std::string& file) const {
  std::vector<std::string> lines;
  for (const Fault& fault : listed) lines.push_back(line_of(fault, file));
  if (count > kMostListed)
    lines.push_back(file + ": " + counted(static_cast<int64_t>(count - kMostListed), "more fault"));
  return lines;
}

}  // namespace design
