// SPDX-License-Identifier: Apache-2.0
// Files of sound, as far as libsndfile reads them.
#pragma once

#include <string>
#include <string_view>

#include "design/formats/drawing.h"
#include "design/formats/sound.h"
#include "files.h"
#include "lrasynth.h"

namespace command {

constexpr size_t kLargestSound = size_t{256} << 20U;  // bytes

// Whether a file that begins like that is sound: WAV, FLAC, Ogg, AIFF, AU or CAF. It takes the first dozen bytes.
bool is_sound(std::string_view first_bytes);

// An open file that can be read from its start as often as one likes: what comes through a pipe goes into one that has
// no name. The bytes are those of its beginning that have been taken from it already. One that is too large is a
// Failure.
Input sound_in(const Input& input, std::string_view first_bytes, const std::string& path);

// The sound in such a file, its channels mixed down. What is wrong with the samples is a fault of the drawing; what is
// no sound, or cannot be read, is a Failure.
design::Drawing drawing_of_sound(const Input& input, const std::string& path, const design::SoundOptions& options,
                                 const lrasynth_profile& profile);

}  // namespace command
