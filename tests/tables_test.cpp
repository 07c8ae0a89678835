// The stored bursts keep what the public header's table says of them.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

#include "support.h"

namespace {

using Samples = std::vector<int>;

struct Row {
  std::string name;
  int length, last_nonzero;
  Samples peaks;
  bool rings_out;
};

// Rows of the header's comment: name, levels, length, last non-zero sample, peaks, perhaps a remark on the ringing.
std::vector<Row> rows_of_the_header() {
  std::ifstream header(LRASYNTH_HEADER);
  const std::regex row(R"((wave_custom_\w+)\s+\d+\.\.\d+\s+(\d+)\s+(\d+)((?:\s+(?:/\s+)?[+-]\d+)+)(.*))");
  std::vector<Row> rows;
  std::smatch match;
  for (std::string line; std::getline(header, line);) {
    if (!std::regex_search(line, match, row)) continue;
    std::istringstream list(std::regex_replace(match[4].str(), std::regex("/"), ""));
    Samples peaks;
    for (int peak = 0; list >> peak;) peaks.push_back(peak);
    rows.push_back(
        {match[1], std::stoi(match[2]), std::stoi(match[3]), peaks, match[5].str().find("then") != std::string::npos});
  }
  return rows;
}

// A table by its exported name.
Samples samples_of(const std::string& name, int length) {
  const auto* const table = static_cast<const uint8_t*>(dlsym(RTLD_DEFAULT, name.c_str()));
  if (table == nullptr) return {};
  return {reinterpret_cast<const int8_t*>(table), reinterpret_cast<const int8_t*>(table) + length};
}

int peak_of(Samples::const_iterator begin, Samples::const_iterator end) {
  return *std::max_element(begin, end, [](int a, int b) { return std::abs(a) < std::abs(b); });
}

bool is_0832(const std::string& name) { return name.find("_T") == std::string::npos; }

// Lobes of 52 samples that stay on their side and peak in their middle third.
Samples fixed_lobes(const Samples& samples, std::size_t count) {
  Samples peaks;
  for (std::size_t lobe = 0; lobe < count; ++lobe) {
    const auto begin = samples.begin() + static_cast<std::ptrdiff_t>(lobe * 52);
    const int peak = peak_of(begin, begin + 52);
    EXPECT_TRUE(std::all_of(begin, begin + 52, [&](int s) { return s * peak >= 0; })) << lobe;
    EXPECT_EQ(peak_of(begin + 17, begin + 35), peak) << lobe;
    peaks.push_back(peak);
  }
  return peaks;
}

// Runs of one sign.
Samples runs(const Samples& samples) {
  Samples peaks;
  for (auto at = samples.begin(); at != samples.end();) {
    const int sign = (*at > 0) - (*at < 0);
    const auto end = std::find_if(at, samples.end(), [&](int s) { return (s > 0) - (s < 0) != sign; });
    if (sign != 0) peaks.push_back(peak_of(at, end));
    at = end;
  }
  return peaks;
}

TEST(Tables, AreWhatTheHeaderSays) {
  const std::vector<Row> rows = rows_of_the_header();
  ASSERT_EQ(rows.size(), 24U);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Samples samples = samples_of(row.name, row.length);
    ASSERT_FALSE(samples.empty());
    EXPECT_EQ(samples.front(), 0);
    EXPECT_EQ(std::count(samples.begin(), samples.end(), -128), 0);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), [](int s) { return s != 0; });
    EXPECT_EQ(samples.rend() - last - 1, row.last_nonzero);
    Samples peaks = is_0832(row.name) ? fixed_lobes(samples, row.peaks.size()) : runs(samples);
    EXPECT_EQ(peaks.size() > row.peaks.size(), row.rings_out);
    for (; peaks.size() > row.peaks.size(); peaks.pop_back()) EXPECT_LE(std::abs(peaks.back()), 3);
    EXPECT_EQ(peaks, row.peaks);
  }
}

TEST(Tables, RiseAsKnown) {
  const Samples opening = {0,  7,  15, 23, 30,  38,  44,  52,  59,  66,  72,  79,
                           84, 90, 95, 99, 105, 108, 113, 116, 119, 122, 124, 124};
  EXPECT_EQ(samples_of("wave_custom_1T", 24), opening);
  for (const char* name : {"wave_custom_2T", "wave_custom_1p5T", "wave_custom_2p5T"}) {
    const Samples samples = samples_of(name, 24);
    for (std::size_t i = 0; i < opening.size(); ++i) EXPECT_NEAR(samples[i], opening[i], 1) << name << " " << i;
  }
  EXPECT_EQ(wave_custom_1p5T[6], 45);
  EXPECT_EQ(wave_custom_1p5T[15], 100);
  EXPECT_EQ(samples_of("wave_custom_T100", 20),
            (Samples{0, 0, 0, 0, 0, 1, 1, 1, 2, 3, 4, 6, 9, 11, 14, 17, 21, 24, 27, 30}));
}

// First lobes span 34..249 at the lowest levels and 5..36 at the highest, and shrink in between.
TEST(Tables, BurstsOfMotor9595ShrinkWithTheLevel) {
  std::ptrdiff_t start_before = 35;
  std::ptrdiff_t end_before = 251;
  for (int level = 5; level <= 100; level += 5) {
    const std::string name = "wave_custom_T" + std::string(level < 10 ? "0" : "") + std::to_string(level);
    const Samples samples = samples_of(name, 804);
    const auto first = std::find_if(samples.begin(), samples.end(), [](int s) { return s != 0; });
    const auto end = std::find_if(first, samples.end(), [](int s) { return s <= 0; });
    EXPECT_LT(first - samples.begin(), start_before) << name;
    EXPECT_LT(end - samples.begin(), end_before) << name;
    start_before = first - samples.begin();
    end_before = end - samples.begin();
  }
  EXPECT_EQ(start_before, 5);
  EXPECT_EQ(end_before, 37);
  EXPECT_GT(wave_custom_T05[34], 0);
  EXPECT_EQ(wave_custom_T05[33], 0);
  EXPECT_LT(wave_custom_T05[249], 128);
  EXPECT_GT(wave_custom_T05[250], 128);
}

}  // namespace
