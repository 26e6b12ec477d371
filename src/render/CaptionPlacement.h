// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/CaptionChip.h"
#include "core/Geometry.h"

namespace tessaloom {

/// Where a caption's raster goes: its rectangle in canvas pixels, and canvas pixels per raster point.
struct CaptionPlacement {
    Rect rect;
    float scale = 0;

    bool operator==(const CaptionPlacement&) const = default;
};

/// Places a raster of `rasterSize` points (made at a font size of 90) by the chip's size and height, then out
/// of the way of `keepOut` (canvas pixels): sideways where a wide canvas leaves room, else above or below.
CaptionPlacement captionPlacement(const CaptionChip& chip, Size rasterSize, float canvasWidth,
                                  float canvasHeight, const std::optional<Rect>& keepOut);

}  // namespace tessaloom
