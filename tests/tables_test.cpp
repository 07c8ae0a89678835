// SPDX-License-Identifier: Apache-2.0
// The stored bursts are what the public header's table says of them, and play at its levels.
#include <dlfcn.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support.h"

namespace {

struct Row {
  std::string name;
  int first_level = 0, last_level = 0, length = 0, last_nonzero = 0;
  std::vector<int> peaks;
  bool rings_out = false;
};

// Rows of the header's comment: name, levels, length, last non-zero sample, peaks, perhaps a remark on the ringing.
std::vector<Row> rows_of_the_header() {
  std::ifstream header(LRASYNTH_HEADER);
  std::vector<Row> rows;
  for (std::string line; std::getline(header, line);) {
    if (!line.starts_with(" *   wave_custom_")) continue;
    Row row;
    row.rings_out = line.find("then") != std::string::npos;
    for (const auto of_levels = line.find(".."); const std::size_t mark : {of_levels, of_levels + 1, line.find('/')}) {
      if (mark < line.size()) line[mark] = ' ';
    }
    std::istringstream words(line.substr(5));
    words >> row.name >> row.first_level >> row.last_level >> row.length >> row.last_nonzero;
    for (int peak = 0; words >> peak;) row.peaks.push_back(peak);
    rows.push_back(row);
  }
  return rows;
}

// Largest sample of each run of one sign.
std::vector<int> peaks_of(const std::vector<int8_t>& samples) {
  std::vector<int> peaks;
  int sign = 0;
  for (const int sample : samples) {
    if (sample != 0 && (sample > 0 ? 1 : -1) != sign) peaks.push_back(0);
    sign = (sample > 0 ? 1 : 0) - (sample < 0 ? 1 : 0);
    if (sample != 0 && std::abs(sample) > std::abs(peaks.back())) peaks.back() = sample;
  }
  return peaks;
}

TEST(Tables, AreWhatTheHeaderSays) {
  const std::vector<Row> rows = rows_of_the_header();
  ASSERT_EQ(rows.size(), 24U);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const auto* const table = static_cast<const uint8_t*>(dlsym(RTLD_DEFAULT, row.name.c_str()));
    ASSERT_NE(table, nullptr);
    const ScopedProfile profile(row.name.find("_T") == std::string::npos ? 832 : 9595);
    for (const int level : {row.first_level, row.last_level})
      EXPECT_EQ(tap(level, 100), Bytes(table, table + row.length)) << level;
    const std::vector<int8_t> samples(table, table + row.length);
    EXPECT_EQ(samples.front(), 0);
    EXPECT_EQ(std::count(samples.begin(), samples.end(), -128), 0);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), [](int sample) { return sample != 0; });
    EXPECT_EQ(samples.rend() - last - 1, row.last_nonzero);
    std::vector<int> peaks = peaks_of(samples);
    EXPECT_EQ(peaks.size() > row.peaks.size(), row.rings_out);
    for (; peaks.size() > row.peaks.size(); peaks.pop_back()) EXPECT_LE(std::abs(peaks.back()), 3);
    EXPECT_EQ(peaks, row.peaks);
  }
}

}  // namespace
