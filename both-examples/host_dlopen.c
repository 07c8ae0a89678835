/* SPDX-License-Identifier: Apache-2.0 */
/* The same host without a link to the library, which it loads when it starts, as a vibrator service does. */
#define _GNU_SOURCE /* dlvsym */
#include <dlfcn.h>
#include <string.h>

#include "playback.h"

/* The file name carries the major version of the interface, and so does the version of each symbol: a library of
 * another major version is never taken for this one. On Android the file is liblrasynth.so. */
#define LIBRARY "liblrasynth.so.1"
#define INTERFACE "LRASYNTH_1"

static struct {
  void (*setChipType)(int32_t chipType);
  int32_t (*setMotorType)(int32_t motorType);
  int32_t (*setBoostFlg)(int32_t flag);
  int32_t (*getShortSignalDataLength)(int32_t level);
  int32_t (*getShortSignalData)(int32_t level, int32_t intensity, uint8_t *out);
  int32_t (*getLongSignalBufferLength)(int32_t loopCount, int32_t intervalMs, const int32_t *pattern,
                                       int32_t patternLen);
  int32_t (*getLongSignalData)(int32_t loopCount, int32_t intervalMs, const int32_t *pattern, uint8_t *out,
                               int32_t patternLen, int32_t limitMs);
} synth;

static const struct {
  const char *name;
  void *pointer;
} symbols[] = {
    {"setChipType", &synth.setChipType},
    {"setMotorType", &synth.setMotorType},
    {"setBoostFlg", &synth.setBoostFlg},
    {"getShortSignalDataLength", &synth.getShortSignalDataLength},
    {"getShortSignalData", &synth.getShortSignalData},
    {"getLongSignalBufferLength", &synth.getLongSignalBufferLength},
    {"getLongSignalData", &synth.getLongSignalData},
};

/* Returns the library's handle, or NULL, with a message, where the library or one of its functions is missing. */
static void *load_synth(void) {
  void *library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) {
    fprintf(stderr, "%s\n", dlerror());
    return NULL;
  }
  for (size_t i = 0; i < sizeof symbols / sizeof symbols[0]; ++i) {
    void *symbol = dlvsym(library, symbols[i].name, INTERFACE);
    if (symbol == NULL) {
      fprintf(stderr, "%s\n", dlerror());
      dlclose(library);
      return NULL;
    }
    /* ISO C has no conversion from void * to a pointer to a function; POSIX gives both one representation. */
    memcpy(symbols[i].pointer, &symbol, sizeof symbol);
  }
  return library;
}

static bool play_tap(int32_t level, int32_t intensity, FILE *driver) {
  const int32_t length = synth.getShortSignalDataLength(level);
  uint8_t *tap = waveform_memory("tap", length);
  if (tap == NULL) return false;
  return play("tap", tap, length, synth.getShortSignalData(level, intensity, tap), driver);
}

static bool play_pattern(const char *what, FILE *driver) {
  enum { LOOPS = 2, INTERVAL_MS = 100, LIMIT_MS = 10000 };
  const int32_t length = synth.getLongSignalBufferLength(LOOPS, INTERVAL_MS, pattern, PATTERN_LENGTH);
  uint8_t *out = waveform_memory(what, length);
  if (out == NULL) return false;
  const int32_t status = synth.getLongSignalData(LOOPS, INTERVAL_MS, pattern, out, PATTERN_LENGTH, LIMIT_MS);
  return play(what, out, length, status, driver);
}

static bool play_all(FILE *driver) {
  synth.setChipType(0);
  synth.setMotorType(1040);
  synth.setBoostFlg(0);
  if (!play_tap(50, 80, driver) || !play_pattern("pattern", driver)) return false;

  synth.setChipType(11);
  return play_pattern("event stream", driver);
}

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return EXIT_FAILURE;
  }
  void *library = load_synth();
  if (library == NULL) return EXIT_FAILURE;
  FILE *driver = fopen(argv[1], "wb");
  bool played = driver != NULL && play_all(driver);
  if (driver == NULL || fclose(driver) != 0) {
    perror(argv[1]);
    played = false;
  }
  dlclose(library);
  return played ? EXIT_SUCCESS : EXIT_FAILURE;
}
