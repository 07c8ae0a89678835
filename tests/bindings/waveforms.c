/* SPDX-License-Identifier: Apache-2.0 */
/* Prints taps, patterns and refusals, which must be those of the bindings beside this file. In the oldest C, so that
 * the exported builders of records make the request. */
#include <stdio.h>
#include <stdlib.h>

#include "lrasynth.h"

static const int32_t motors[] = {832, 1040, 9595, 81540};
static const int32_t chips[] = {0, LRASYNTH_CHIP_HALF_RATE, LRASYNTH_CHIP_EVENT_STREAM};
static const lrasynth_point points[] = {{0, 0, 0}, {100, 90, 20}, {300, 60, -15}, {400, 0, 0}};

static void refuse(int64_t error) { printf("%d %s\n", (int)error, lrasynth_error_text(error)); }

static void print_tap(const lrasynth_profile *profile, int32_t level) {
  static uint8_t out[4096];
  const int64_t n = lrasynth_tap_read(profile, level, 83, 0, out, sizeof out);
  if (n < 0)
    refuse(n);
  else
    fwrite(out, 1, (size_t)n, stdout);
}

static void print_pattern(const lrasynth_profile *profile, const lrasynth_pattern *pattern) {
  int32_t index = 0;
  const int32_t fault = lrasynth_pattern_check(profile, pattern, &index);
  const int64_t length = lrasynth_pattern_length(profile, pattern);
  uint8_t *out;
  if (fault < 0) {
    refuse(fault);
    printf("%d\n", (int)index);
  }
  if (length < 0) {
    refuse(length);
    return;
  }
  out = malloc((size_t)length + 1);
  if (!out || lrasynth_pattern_read(profile, pattern, 0, out, length) != length) abort();
  fwrite(out, 1, (size_t)length, stdout);
  free(out);
}

int main(void) {
  int32_t records[2 * LRASYNTH_RECORD_LENGTH];
  lrasynth_pattern pattern;
  int motor, chip, boost, level;
  lrasynth_put_continuous(records, 0, 400, points);
  lrasynth_put_transient(records + LRASYNTH_RECORD_LENGTH, 450, 80, 50);
  pattern.records = records;
  pattern.length = 2 * LRASYNTH_RECORD_LENGTH;
  pattern.loop_count = 30;
  pattern.limit_ms = LRASYNTH_NO_LIMIT;
  for (motor = 0; motor < 4; ++motor)
    for (chip = 0; chip < 3; ++chip)
      for (boost = 0; boost < 2; ++boost) {
        const lrasynth_profile profile = lrasynth_profile_of(chips[chip], motors[motor], boost);
        for (level = -1; level <= 101; level += 3) print_tap(&profile, level);
        pattern.interval_ms = 250;
        print_pattern(&profile, &pattern);
        pattern.interval_ms = -1000; /* which samples cannot have */
        print_pattern(&profile, &pattern);
      }
  return 0;
}
