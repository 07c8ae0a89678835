// SPDX-License-Identifier: Apache-2.0
// The XML of Android's vibration effects, read and written. Its effects play one after another; what its primitives
// are to feel like is left to every device, so that their shapes here are ours.
#pragma once

#include <string>

#include "design/formats/drawing.h"
#include "design/formats/xml.h"

namespace design {

// Whether the root is one of this form's.
bool is_android(const XmlElement& root);

void read_android(const XmlElement& root, Drawing& drawing);

// One effect of envelopes and primitives. Curves must not overlap each other; taps may stand in them.
std::string write_android(const Drawing& drawing, Losses& losses);

}  // namespace design
