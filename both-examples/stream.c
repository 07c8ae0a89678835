/* SPDX-License-Identifier: Apache-2.0 */
/* An alarm that loops, played through a buffer of 1 KiB: no memory for the whole, no state but a position. */
#include <lrasynth.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>

enum { RECORDS = 2 };

/* A swell and a tap, built without counting indices, and checked before anything plays. */
static bool build(const lrasynth_profile *profile, int32_t *records, lrasynth_pattern *ring) {
  const lrasynth_point swell[] = {{0, 0, 0}, {150, 90, 20}, {450, 60, 0}, {600, 0, 0}};
  lrasynth_put_continuous(records, 0, 600, swell);
  lrasynth_put_transient(records + LRASYNTH_RECORD_LENGTH, 700, 80, 50);
  *ring = (lrasynth_pattern){records, RECORDS * LRASYNTH_RECORD_LENGTH, 30, 250, LRASYNTH_NO_LIMIT};
  int32_t index;
  const int32_t fault = lrasynth_pattern_check(profile, ring, &index);
  if (fault != 0) fprintf(stderr, "record %d: %s\n", (int)(index / LRASYNTH_RECORD_LENGTH), lrasynth_error_text(fault));
  return fault == 0;
}

static bool play(const lrasynth_profile *profile, const lrasynth_pattern *ring, FILE *driver) {
  uint8_t block[1024];
  int64_t at = 0, n;
  while ((n = lrasynth_pattern_read(profile, ring, at, block, sizeof block)) > 0) {
    if (fwrite(block, 1, (size_t)n, driver) != (size_t)n) return false;
    at += n;
  }
  if (n < 0) fprintf(stderr, "%s\n", lrasynth_error_text(n));
  printf("%lld bytes\n", (long long)at);
  return n == 0;
}

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return EXIT_FAILURE;
  }
  const lrasynth_profile profile = lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1);
  int32_t records[RECORDS * LRASYNTH_RECORD_LENGTH];
  lrasynth_pattern ring;
  if (!build(&profile, records, &ring)) return EXIT_FAILURE;
  FILE *driver = fopen(argv[1], "wb");
  bool played = driver != NULL && play(&profile, &ring, driver);
  if (driver == NULL || fclose(driver) != 0) {
    perror(argv[1]);
    played = false;
  }
  return played ? EXIT_SUCCESS : EXIT_FAILURE;
}
