// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "render/PixelKernels.h"

namespace tessaloom {

/// A place between two neighbouring texels of a row or column: `weight` (a 15-bit fraction) of the way from
/// texel `index` to the next one.
struct TexelPosition {
    int index = 0;
    std::int16_t weight = 0;
};

/// How canvas pixels along one axis read a picture: the canvas from `origin` to `origin` + `size` (pixels)
/// shows the picture from `shownOrigin` to `shownOrigin` + `shownSize` (fractions of it, possibly outside 0
/// to 1).
struct AxisMapping {
    double origin = 0;
    double size = 0;
    double shownOrigin = 0;
    double shownSize = 1;
    /// Fractions beyond these are read as if they were these.
    double least = -std::numeric_limits<double>::infinity();
    double greatest = std::numeric_limits<double>::infinity();

    /// The fraction of the picture at the centre of a canvas pixel.
    double fractionAt(int pixel) const {
        return std::clamp(shownOrigin + (pixel + 0.5 - origin) / size * shownSize, least, greatest);
    }

    bool operator==(const AxisMapping&) const = default;
};

/// The place of a fraction of a picture in 1/32768 texels from the centre of the first one, clamped to the
/// centres of the outermost texels. Not-a-number, from a mapping without size, reads the first.
inline std::int64_t fixedTexel(double fraction, int length) {
    const double texel = fraction * length - 0.5;
    if (!(texel > 0)) return 0;
    return std::llround(std::min(texel, length - 1.0) * (1 << PixelKernels::weightBits));
}

/// Such that index + 1 is a texel too, unless the picture has only one.
inline TexelPosition texelPosition(std::int64_t fixed, int length) {
    const int index = static_cast<int>(fixed >> PixelKernels::weightBits);
    if (index >= length - 1 && length > 1) return {length - 2, PixelKernels::largestWeight};
    return {index, static_cast<std::int16_t>(fixed & PixelKernels::largestWeight)};
}

}  // namespace tessaloom
