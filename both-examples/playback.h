/* SPDX-License-Identifier: Apache-2.0 */
/* What the two hosts share: a pattern, memory for a waveform, and a file in place of the driver's device node. */
#ifndef PLAYBACK_H
#define PLAYBACK_H

#include <stdbool.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

enum { PATTERN_LENGTH = 34 };

/* A vibration that swells for 50 ms and fades until 200 ms, and a tap at 300 ms. */
static const int32_t pattern[PATTERN_LENGTH] = {
    /* type, start ms, -, -, duration ms, four points of time ms, intensity %, frequency offset */
    4096, 0, 0, 0, 200, 0, 0, 0, 50, 90, 50, 150, 60, 40, 200, 0, 0,
    /* type, start ms, intensity %, level; the rest of the record is not read */
    4097, 300, 80, 50};

/* Zeroed memory: bytes that no event covers keep their content, and 0 is rest. NULL, with a message, if there is none
 * or nothing to play. */
static uint8_t *waveform_memory(const char *what, int32_t length) {
  if (length == 0) {
    fprintf(stderr, "%s: the motor has nothing to play\n", what);
    return NULL;
  }
  uint8_t *memory = calloc((size_t)length, 1);
  if (memory == NULL) perror(what);
  return memory;
}

/* Hands a waveform to the driver, if the library did not refuse it, and frees it. */
static bool play(const char *what, uint8_t *waveform, int32_t length, int32_t status, FILE *driver) {
  bool played = false;
  if (status != 0) {
    fprintf(stderr, "%s: refused\n", what);
  } else if (fwrite(waveform, 1, (size_t)length, driver) != (size_t)length) {
    perror(what);
  } else {
    printf("%s: %d bytes\n", what, (int)length);
    played = true;
  }
  free(waveform);
  return played;
}

#endif
