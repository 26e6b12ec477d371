// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"

namespace tessaloom {

/// Where the framed recording lies on a canvas, in canvas pixels. The values are 32-bit floats, widened.
struct ContentGeometry {
    Rect rect;
    float cornerRadius = 0;

    bool operator==(const ContentGeometry&) const = default;
};

/// `aspect` is width over height of what is shown (16/9 stands in for one that is not positive). The margin
/// and the corner radius are fractions of the canvas width; the margin is the same on both axes, and what is
/// left over is centred.
ContentGeometry contentGeometry(float canvasWidth, float canvasHeight, float aspect, float paddingFraction,
                                float cornerFraction);

}  // namespace tessaloom
