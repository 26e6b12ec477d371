// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "core/RawString.h"

namespace tessaloom {

/// The wanted size of an export, named by its short edge in pixels.
enum class ResolutionPreset { p720, p1080, p1440, p2160 };

template <>
struct RawStrings<ResolutionPreset> {
    static constexpr std::array<std::string_view, 4> values{"p720", "p1080", "p1440", "p2160"};
};

/// The long edge, in pixels, of a canvas of the shape `aspect` (width over height).
int outputLongEdge(ResolutionPreset preset, double aspect);

}  // namespace tessaloom
