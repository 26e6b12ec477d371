// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>

#include "core/Geometry.h"
#include "media/BgraImage.h"

class QPainter;

namespace tessaloom {

/// Something drawn once to be laid over frames: premultiplied pixels, and its size in points.
struct OverlayRaster {
    BgraImage pixels;
    Size size;
};

/// Pixels per point of all rasters.
constexpr double rasterScale = 2;

/// Draws on a clear picture of `size` points, `scale` pixels to the point; the painter works in points,
/// origin top left. Nothing, and a line in the log, when a side is outside 1 to 16384 pixels or
/// there is no memory for it.
std::optional<OverlayRaster> drawRaster(Size size, double scale, const std::function<void(QPainter&)>& draw);

/// Says in the log that a renderer had no memory for a raster of this many pixels.
void logRasterNotKept(int width, int height);

}  // namespace tessaloom
