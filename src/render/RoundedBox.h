// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"
#include "render/PixelSpan.h"

namespace tessaloom {

/// A rectangle with squircle-like corners, in canvas pixels: the outline of everything rounded in a frame.
struct RoundedBox {
    Rect rect;
    /// Radius of the corners.
    double corner = 0;

    /// Signed distance of a point from the outline, negative inside. The corner is a p-norm with p = 4: with
    /// q = |point - centre| - (half size - corner), it is (max(q.x, 0)^4 + max(q.y, 0)^4)^(1/4) +
    /// min(max(q.x, q.y), 0) - corner.
    double distance(double x, double y) const;

    /// The pixels of 0 to `width` in row `y` whose centres are no further out than `limit`. They are always
    /// neighbours, since the distance only grows away from the middle.
    PixelSpan rowSpan(int y, double limit, int width) const;

    bool operator==(const RoundedBox&) const = default;
};

/// The cubic Hermite step from 0 at `edge0` to 1 at `edge1`; falling along x when edge0 > edge1.
double hermiteStep(double edge0, double edge1, double x);

}  // namespace tessaloom
