// SPDX-License-Identifier: Apache-2.0
// Benchmarks: the library beside bare sines, in one process.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "lrasynth.h"

namespace {

using Request = std::vector<int32_t>;
using Bytes = std::vector<uint8_t>;

Request operator+(Request first, const Request& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Request steady(int32_t duration_ms) {
  const int32_t d = duration_ms;
  return {4096, 0, 0, 0, d, 0, 80, 0, d / 3, 80, 0, d / 3 * 2, 80, 0, d, 80, 0};
}

Request fade_and_chirp(int32_t start_ms, int32_t duration_ms) {
  const int32_t d = duration_ms;
  return {4096, start_ms, 0, 0, d, 0, 20, -20, d / 3, 100, 10, d / 3 * 2, 80, -30, d, 10, 0};
}

// Ten seconds: an event of fades and chirps and a transient in each.
Request mixed() {
  Request request;
  for (int32_t second = 0; second < 10; ++second) {
    Request tap = {4097, second * 1000 + 100, 80, 50};
    tap.resize(17);
    request = request + tap + fade_and_chirp(second * 1000, 1000);
  }
  return request;
}

Request one_tap(int32_t start_ms = 0) {
  Request tap = {4097, start_ms, 100, 50};
  tap.resize(17);
  return tap;
}

// As many as a busy pattern has, one behind the other.
constexpr int32_t kMany = 120;

Request many_taps() {
  Request request;
  for (int32_t i = 0; i < kMany; ++i) request = request + one_tap(17 * i);
  return request;
}

Request many_vibrations(int32_t duration_ms) {
  Request request;
  for (int32_t i = 0; i < kMany; ++i) request = request + fade_and_chirp(duration_ms * i, duration_ms);
  return request;
}

int32_t size_of(const Request& request) { return static_cast<int32_t>(request.size()); }

// One waveform, rendered into a buffer of `samples` bytes.
struct Case {
  std::string name;
  int32_t samples;
  std::function<void(uint8_t*)> render;
};

// Two library sines a sample and nothing else: what the definition of a continuous vibration takes at least.
float two_sines(int32_t samples) {
  constexpr float kCarrier = 6.2831855F * 170 / 24000;
  constexpr float kEnvelope = 1.5707964F / 24000;
  const auto sine_of = [](float phase) { return static_cast<float>(std::sin(static_cast<double>(phase))); };
  float sum = 0;
  for (int32_t i = 0; i < samples; ++i) {
    const auto position = static_cast<float>(i % 24000);
    sum += sine_of(kCarrier * position) * sine_of(kEnvelope * position);
  }
  return sum;
}

Case pattern_case(const std::string& name, const Request& request) {
  const int32_t samples = getLongSignalBufferLength(1, 0, request.data(), size_of(request));
  return {name, samples,
          [=](uint8_t* out) { getLongSignalData(1, 0, request.data(), out, size_of(request), LRASYNTH_NO_LIMIT_MS); }};
}

Case tap_case(int32_t motor, int32_t level) {
  constexpr int32_t kIntensity = 73;
  setMotorType(motor);
  const int32_t samples = getShortSignalDataLength(level);
  setMotorType(LRASYNTH_MOTOR_1040);
  return {"tap_" + std::to_string(motor) + "_" + std::to_string(level), samples, [=](uint8_t* out) {
            setMotorType(motor);
            getShortSignalData(level, kIntensity, out);
            setMotorType(LRASYNTH_MOTOR_1040);
          }};
}

Case event_stream_case() {
  const Request request = mixed();
  return {"event_stream_200_events", 2 + 6 * 200, [=](uint8_t* out) {
            setChipType(LRASYNTH_CHIP_EVENT_STREAM);
            getLongSignalData(10, 0, request.data(), out, size_of(request), 0);
            setChipType(0);
          }};
}

// A pattern read in windows of one size.
Case windows_case(const std::string& name, const Request& request, int32_t window) {
  const int32_t samples = getLongSignalBufferLength(1, 0, request.data(), size_of(request));
  return {name + "_by_" + std::to_string(window), samples, [=](uint8_t* out) {
            const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
            const lrasynth_pattern pattern = {request.data(), size_of(request), 1, 0, LRASYNTH_NO_LIMIT};
            for (int64_t at = 0, n = 1; n > 0; at += n) {
              n = lrasynth_pattern_read(&profile, &pattern, at, out, window);
            }
          }};
}

const char* const kManyRecords[] = {"taps_120", "vibrations_120_5ms", "vibrations_120_20ms", "vibrations_120_100ms"};

std::vector<Case> cases() {
  std::vector<Case> all = {pattern_case("steady_10ms", steady(10)),
                           pattern_case("steady_1s", steady(1000)),
                           pattern_case("steady_60s", steady(60000)),
                           pattern_case("fades_and_chirps_1s", fade_and_chirp(0, 1000)),
                           pattern_case("fades_and_chirps_10s", fade_and_chirp(0, 10000)),
                           pattern_case("fades_and_chirps_60s", fade_and_chirp(0, 60000)),
                           windows_case("fades_and_chirps_60s", fade_and_chirp(0, 60000), 1024),
                           windows_case("fades_and_chirps_60s", fade_and_chirp(0, 60000), 256),
                           pattern_case("mixed_10s", mixed()),
                           pattern_case("pattern_of_one_tap", one_tap()),
                           tap_case(1040, 10),
                           tap_case(1040, 50),
                           tap_case(1040, 90),
                           tap_case(832, 50),
                           tap_case(9595, 50),
                           event_stream_case()};
  const Request many[] = {many_taps(), many_vibrations(5), many_vibrations(20), many_vibrations(100)};
  for (std::size_t i = 0; i < std::size(many); ++i) {
    all.push_back(pattern_case(kManyRecords[i], many[i]));
    all.push_back(windows_case(kManyRecords[i], many[i], 256));
  }
  return all;
}

template <class Body>
void add(const std::string& name, int32_t samples, Body body) {
  benchmark::RegisterBenchmark(name.c_str(), [body, samples](benchmark::State& state) {
    Bytes out(static_cast<std::size_t>(samples));
    for (auto _ : state) {
      body(out.data());
      benchmark::ClobberMemory();
    }
  });
}

void add(const Case& c) {
  add(c.name + "/lrasynth", c.samples, c.render);
  add(c.name + "/two_sines", c.samples,
      [samples = c.samples](uint8_t*) { benchmark::DoNotOptimize(two_sines(samples)); });
}

// The console's table, and the fastest repetition of each benchmark in nanoseconds.
class Ratios : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      const double ns = run.GetAdjustedCPUTime();
      const auto [at, is_new] = fastest_.emplace(run.run_name.function_name, ns);
      if (!is_new) at->second = std::min(at->second, ns);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void print(const std::vector<Case>& all) const {
    std::printf("\n%-28s %10s %14s\n", "", "ns/sample", "2 sines / ours");
    for (const Case& c : all) {
      const double ours = of(c.name + "/lrasynth");
      std::printf("%-28s %10.2f %14.1f\n", c.name.c_str(), ours / c.samples, of(c.name + "/two_sines") / ours);
    }
    std::printf("\npattern_of_one_tap over tap_1040_50: %.0f ns\n",
                of("pattern_of_one_tap/lrasynth") - of("tap_1040_50/lrasynth"));
    for (const std::string name : kManyRecords) {
      std::printf("%s by 256: %.1f times the whole\n", name.c_str(),
                  of(name + "_by_256/lrasynth") / of(name + "/lrasynth"));
    }
  }

 private:
  double of(const std::string& name) const {
    const auto at = fastest_.find(name);
    return at == fastest_.end() ? std::nan("") : at->second;
  }

  std::map<std::string, double> fastest_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return EXIT_FAILURE;
  const std::vector<Case> all = cases();
  for (const Case& c : all) add(c);
  Ratios ratios;
  benchmark::RunSpecifiedBenchmarks(&ratios);
  ratios.print(all);
  return EXIT_SUCCESS;
}
