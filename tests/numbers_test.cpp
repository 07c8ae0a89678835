// SPDX-License-Identifier: Apache-2.0
// What calls give, by numbers.csv: under a motor, a rate and a boost flag as stored, a function's name and arguments,
// and its result. Of functions that write, length and status, or, with a number in the column `from`, what they have
// written from that element on. `255*84` stands for 84 elements.
#include <charconv>
#include <fstream>
#include <sstream>
#include <string>

#include "calls.h"
#include "support.h"

namespace {

template <class Number>
std::string text_of(Number number) {
  char text[32];
  return {text, std::to_chars(text, std::end(text), number).ptr};
}

// Takes the words of a row as arguments and keeps the results as text.
struct Host {
  std::istringstream arguments;
  std::size_t from, most;  // elements of what is written
  std::vector<std::string> results = {};
  int32_t drawn = 0;

  template <class Number>
  Number about(int32_t /*low*/, int32_t /*high*/) {
    std::string word;
    arguments >> word;
    if constexpr (std::is_integral_v<Number>) return std::stoi(word);
    return static_cast<Number>(std::strtof(word.c_str(), nullptr));
  }
  int32_t between(int32_t low, int32_t high) { return low + (drawn += 7919) % (high - low + 1); }  // of windows
  Integers pattern() { return {std::istream_iterator<int32_t>(arguments), {}}; }

  template <class Number>
  void result(Number number) {
    results.push_back(text_of(number));
  }
  template <class Sample>
  void output(int32_t length, int32_t status, const std::vector<Sample>& samples) {
    if (from == std::string::npos) results = {text_of(length), text_of(status)};
    for (std::size_t i = from; i < samples.size() && results.size() < most; ++i) result(samples[i]);
  }
};

std::vector<std::string> expanded(const std::string& results) {
  std::vector<std::string> all;
  std::istringstream words(results);
  for (std::string word; words >> word;) {
    const std::size_t times = word.find('*');
    all.insert(all.end(), times == std::string::npos ? 1 : std::stoul(word.substr(times + 1)), word.substr(0, times));
  }
  return all;
}

bool run(const std::string& name, Host& host) {
  const auto run_in = [&](const auto& list) {
    for (const auto& call : list) {
      if (call.name == name) return call.run(host), true;
    }
    return false;
  };
  return run_in(calls::kShort<Host>) || run_in(calls::kLong<Host>) || run_in(calls::kChecks<Host>);
}

TEST(Numbers, AreThoseOfTheTable) {
  std::ifstream table(LRASYNTH_NUMBERS);
  std::string line;
  std::getline(table, line);
  ASSERT_EQ(line, "motor,rate,boost,call,from,result");
  int rows = 0;
  while (std::getline(table, line)) {
    if (line.starts_with('#')) continue;
    SCOPED_TRACE(line);
    ++rows;
    std::string motor, rate, boost, name, call, from, result;
    std::istringstream columns(line);
    for (std::string* column : {&motor, &rate, &boost, &call, &from, &result}) std::getline(columns, *column, ',');
    const ScopedProfile profile(std::stoi(motor), rate == "stream" ? LRASYNTH_CHIP_EVENT_STREAM : 0, std::stoi(boost));
    if (rate != "stream") SAMPLE_RATE = std::stoi(rate);
    const std::vector<std::string> expected = expanded(result);
    Host host{std::istringstream(call), from.empty() ? std::string::npos : std::stoul(from), expected.size()};
    host.arguments >> name;
    ASSERT_TRUE(run(name, host));
    EXPECT_EQ(host.results, expected);
  }
  EXPECT_GT(rows, 200);
}

}  // namespace
