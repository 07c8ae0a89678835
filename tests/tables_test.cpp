// The stored bursts keep what the public header's table says of them.
#include <dlfcn.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "support.h"

namespace {

using Samples = std::vector<int>;

struct Row {
  std::string name, levels;
  int length = 0, last_nonzero = 0;
  Samples peaks;
  bool of_832 = false, rings_out = false;
};

// Rows of the header's comment: name, levels, length, last non-zero sample, peaks, perhaps a remark on the ringing.
std::vector<Row> rows_of_the_header() {
  std::ifstream header(LRASYNTH_HEADER);
  std::vector<Row> rows;
  for (std::string line; std::getline(header, line);) {
    if (line.rfind(" *   wave_custom_", 0) != 0) continue;
    Row row;
    row.of_832 = line.find("_T") == std::string::npos;
    row.rings_out = line.find("then") != std::string::npos;
    line.erase(std::remove(line.begin(), line.end(), '/'), line.end());
    std::istringstream words(line.substr(5));
    words >> row.name >> row.levels >> row.length >> row.last_nonzero;
    for (int peak = 0; words >> peak;) row.peaks.push_back(peak);
    rows.push_back(row);
  }
  return rows;
}

// A table by its exported name.
Samples samples_of(const std::string& name, int length) {
  const auto* const table = static_cast<const int8_t*>(dlsym(RTLD_DEFAULT, name.c_str()));
  return table == nullptr ? Samples(1, -128) : Samples(table, table + length);
}

struct Lobe {
  std::ptrdiff_t begin, end, top;
  int peak;
};

// Runs of one sign.
std::vector<Lobe> lobes_of(const Samples& samples) {
  std::vector<Lobe> lobes;
  for (auto at = samples.begin(); at != samples.end();) {
    const auto end =
        std::find_if(at, samples.end(), [&](int s) { return (s > 0) != (*at > 0) || (s < 0) != (*at < 0); });
    const auto top = std::max_element(at, end, [](int a, int b) { return std::abs(a) < std::abs(b); });
    if (*top != 0) lobes.push_back({at - samples.begin(), end - samples.begin(), top - samples.begin(), *top});
    at = end;
  }
  return lobes;
}

TEST(Tables, AreWhatTheHeaderSays) {
  const std::vector<Row> rows = rows_of_the_header();
  ASSERT_EQ(rows.size(), 24U);
  std::vector<Lobe> first_of_9595;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Samples samples = samples_of(row.name, row.length);
    EXPECT_EQ(samples.front(), 0);
    EXPECT_EQ(std::count(samples.begin(), samples.end(), -128), 0);
    std::vector<Lobe> lobes = lobes_of(samples);
    EXPECT_EQ(lobes.back().end, row.last_nonzero + 1);
    EXPECT_EQ(lobes.size() > row.peaks.size(), row.rings_out);
    for (; lobes.size() > row.peaks.size(); lobes.pop_back()) EXPECT_LE(std::abs(lobes.back().peak), 3);
    Samples peaks;
    for (const Lobe& lobe : lobes) peaks.push_back(lobe.peak);
    EXPECT_EQ(peaks, row.peaks);
    if (!row.of_832) first_of_9595.push_back(lobes[0]);
    for (std::ptrdiff_t i = 0; row.of_832 && i < std::ssize(lobes); ++i) {
      EXPECT_EQ(lobes[i].begin, 52 * i + 1);
      EXPECT_EQ((lobes[i].top - 52 * i) * 3 / 52, 1) << "not in the middle third";
    }
  }
  // First lobes span 34..249 at the lowest levels and 5..36 at the highest, and shrink in between.
  const auto grown = [](const Lobe& a, const Lobe& b) { return a.begin <= b.begin || a.end <= b.end; };
  EXPECT_EQ(std::adjacent_find(first_of_9595.begin(), first_of_9595.end(), grown), first_of_9595.end());
  const Lobe low = first_of_9595.front(), high = first_of_9595.back();
  EXPECT_THAT((std::vector{low.begin, low.end, high.begin, high.end}), ElementsAre(34, 250, 5, 37));
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

}  // namespace
