// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/RawString.h"
#include "export/CanvasSize.h"

namespace tessaloom {

enum class QualityPreset { high, balanced, small };

template <>
struct RawStrings<QualityPreset> {
    static constexpr std::array<std::string_view, 3> values{"high", "balanced", "small"};
};

/// Bits for each pixel of each frame.
double bitsPerPixel(QualityPreset preset);

/// Bits a second of a movie at 60 frames a second, 500 000 at least.
std::int64_t movieBitRate(CanvasSize canvas, double bitsPerPixel);

}  // namespace tessaloom
