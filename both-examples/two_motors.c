/* SPDX-License-Identifier: Apache-2.0 */
/* Two actuators on two threads, each with a profile and a pattern of its own. Nothing is shared, so nothing is locked.
 */
#include <lrasynth.h>
#include <pthread.h>

#include "playback.h"

typedef struct actuator {
  const char *name;
  lrasynth_profile profile;
  lrasynth_pattern pattern;
  uint8_t *waveform;
  int64_t length; /* or why there is none */
} actuator;

static void *render(void *argument) {
  actuator *a = argument;
  a->length = lrasynth_pattern_length(&a->profile, &a->pattern);
  a->waveform = a->length > 0 ? waveform_memory(a->name, (int32_t)a->length) : NULL;
  if (a->waveform != NULL) {
    a->length = lrasynth_pattern_read(&a->profile, &a->pattern, 0, a->waveform, a->length);
  }
  return NULL;
}

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return EXIT_FAILURE;
  }
  const lrasynth_pattern twice = {pattern, PATTERN_LENGTH, 2, 100, LRASYNTH_NO_LIMIT};
  actuator actuators[] = {
      {"left", lrasynth_profile_of(0, LRASYNTH_MOTOR_1040, 1), twice, NULL, 0},
      {"right", lrasynth_profile_of(LRASYNTH_CHIP_HALF_RATE, LRASYNTH_MOTOR_832, 1), twice, NULL, 0},
  };
  pthread_t threads[2];
  for (int i = 0; i < 2; ++i) {
    if (pthread_create(&threads[i], NULL, render, &actuators[i]) != 0) return EXIT_FAILURE;
  }
  for (int i = 0; i < 2; ++i) pthread_join(threads[i], NULL);

  FILE *driver = fopen(argv[1], "wb");
  bool played = driver != NULL;
  for (int i = 0; i < 2; ++i) {
    const actuator *a = &actuators[i];
    if (a->length < 0) fprintf(stderr, "%s: %s\n", a->name, lrasynth_error_text(a->length));
    played = played && a->waveform != NULL && play(a->name, a->waveform, (int32_t)a->length, 0, driver);
  }
  if (driver == NULL || fclose(driver) != 0) {
    perror(argv[1]);
    played = false;
  }
  return played ? EXIT_SUCCESS : EXIT_FAILURE;
}
