/* SPDX-License-Identifier: Apache-2.0 */
/* A host in C that is linked with the library: a tap and a pattern as samples, then the pattern as an event stream. */
#include <lrasynth.h>

#include "playback.h"

static bool play_tap(int32_t level, int32_t intensity, FILE *driver) {
  const int32_t length = getShortSignalDataLength(level);
  uint8_t *tap = waveform_memory("tap", length);
  if (tap == NULL) return false;
  return play("tap", tap, length, getShortSignalData(level, intensity, tap), driver);
}

/* Twice, 100 ms apart. No vibration of ours starts later than after 10 s, so that is the limit. */
static bool play_pattern(const char *what, FILE *driver) {
  enum { LOOPS = 2, INTERVAL_MS = 100, LIMIT_MS = 10000 };
  const int32_t length = getLongSignalBufferLength(LOOPS, INTERVAL_MS, pattern, PATTERN_LENGTH);
  uint8_t *out = waveform_memory(what, length);
  if (out == NULL) return false;
  const int32_t status = getLongSignalData(LOOPS, INTERVAL_MS, pattern, out, PATTERN_LENGTH, LIMIT_MS);
  return play(what, out, length, status, driver);
}

static bool play_all(FILE *driver) {
  setChipType(0); /* 24000 samples a second */
  setMotorType(1040);
  setBoostFlg(0); /* boost on */
  if (!play_tap(50, 80, driver) || !play_pattern("pattern", driver)) return false;

  setChipType(11); /* plays events by itself: the same calls now size and write the compact stream */
  return play_pattern("event stream", driver);
}

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return EXIT_FAILURE;
  }
  FILE *driver = fopen(argv[1], "wb");
  if (driver == NULL) {
    perror(argv[1]);
    return EXIT_FAILURE;
  }
  bool played = play_all(driver);
  if (fclose(driver) != 0) {
    perror(argv[1]);
    played = false;
  }
  return played ? EXIT_SUCCESS : EXIT_FAILURE;
}
