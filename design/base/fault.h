// SPDX-License-Identifier: Apache-2.0
// What is wrong with what people write, and where.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace design {

// In a text, both from 1, a column for each character; 0 where there is no place to name.
struct Place {
  size_t line = 0;
  size_t column = 0;
};

// The places of a text. They are asked for in its order, so that lines are counted once.
class Places {
 public:
  explicit Places(std::string_view text) : text_(text) {}

  Place at(size_t byte);

 private:
  std::string_view text_;
  size_t counted_ = 0;  // bytes
  Place place_ = {1, 1};
};

// Which event something is about.
struct EventName {
  int32_t entry = 0;        // of its file's events, from 1; 0: it is about none in particular
  std::string inside = {};  // of a group: ".2" is its second event, ", pass 4" its fourth repetition

  // "event 3.2, pass 4"
  std::string words() const;
};

struct Fault {
  EventName event = {};
  Place place = {};
  std::string what;
};

// "3:12: event 1: level: ...", with the file's name before it.
std::string line_of(const Fault& fault, const std::string& file);

// The faults of a file as far as anybody reads on, and how many there are.
struct Faults {
  static constexpr size_t kMostListed = 20;

  void add(Fault fault);
  // A line for each, and one for those that are not listed.
  std::vector<std::string> lines(const std::string& file) const;

  std::vector<Fault> listed;
  size_t count = 0;
};

}  // namespace design
