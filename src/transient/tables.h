// SPDX-License-Identifier: Apache-2.0
// The stored bursts, which the public header declares. A library without bare names has them too, with its prefix, so
// that it shares no name with its host.
#pragma once

#ifdef LRASYNTH_NO_BARE_NAMES
#undef LRASYNTH_NO_BARE_NAMES
#define wave_custom_2p5T lrasynth_wave_custom_2p5T
#define wave_custom_1T lrasynth_wave_custom_1T
#define wave_custom_2T lrasynth_wave_custom_2T
#define wave_custom_1p5T lrasynth_wave_custom_1p5T
#define wave_custom_T05 lrasynth_wave_custom_T05
#define wave_custom_T10 lrasynth_wave_custom_T10
#define wave_custom_T15 lrasynth_wave_custom_T15
#define wave_custom_T20 lrasynth_wave_custom_T20
#define wave_custom_T25 lrasynth_wave_custom_T25
#define wave_custom_T30 lrasynth_wave_custom_T30
#define wave_custom_T35 lrasynth_wave_custom_T35
#define wave_custom_T40 lrasynth_wave_custom_T40
#define wave_custom_T45 lrasynth_wave_custom_T45
#define wave_custom_T50 lrasynth_wave_custom_T50
#define wave_custom_T55 lrasynth_wave_custom_T55
#define wave_custom_T60 lrasynth_wave_custom_T60
#define wave_custom_T65 lrasynth_wave_custom_T65
#define wave_custom_T70 lrasynth_wave_custom_T70
#define wave_custom_T75 lrasynth_wave_custom_T75
#define wave_custom_T80 lrasynth_wave_custom_T80
#define wave_custom_T85 lrasynth_wave_custom_T85
#define wave_custom_T90 lrasynth_wave_custom_T90
#define wave_custom_T95 lrasynth_wave_custom_T95
#define wave_custom_T100 lrasynth_wave_custom_T100
#endif

#include "lrasynth.h"
