// SPDX-License-Identifier: Apache-2.0
// Files of sound, as far as libsndfile reads them.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "design/formats/drawing.h"
#include "design/formats/sound.h"
#include "lrasynth.h"

namespace command {

constexpr size_t kLargestSound = size_t{256} << 20U;  // bytes

// Whether a file that begins like that is sound: WAV, FLAC, Ogg, AIFF, AU or CAF. It takes the first dozen bytes.
bool is_sound(std::string_view first_bytes);

// An open file's sound, its channels mixed down. The bytes are those of its beginning that have been taken from it
// already; they are read anew where it is a file on a disk, and else all of it goes into one that has no name. What is
// wrong with the samples is a fault of the drawing; what is no sound, too large or cannot be read is a Failure.
design::Drawing drawing_of_sound(std::FILE* file, std::string_view first_bytes, const std::string& path,
                                 const design::SoundOptions& options, const lrasynth_profile& profile);

}  // namespace command
