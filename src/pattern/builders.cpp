// SPDX-License-Identifier: Apache-2.0
// The public header's builders of records as exports, for callers to whom its inline functions are nothing: C89, and
// every other language.
#define LRASYNTH_HAS_BUILDERS
#include "lrasynth.h"
