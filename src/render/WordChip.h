// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

#include "render/OverlayRaster.h"

namespace tessaloom {

/// Those of the boxes in captions, in raster points.
constexpr double wordChipPadding = 14.4;
constexpr double wordChipRadius = 14;

/// A word on a rounded box, in the caption's font. `padding` (at the sides; above and below together 1.1
/// times as much) and `radius` are raster points. The text is near-black on light boxes, white on others.
/// Nothing when the raster would be too large. Main thread.
std::optional<OverlayRaster> wordChip(std::string_view text, std::string_view colorHex, double padding,
                                      double radius, bool uppercase);

}  // namespace tessaloom
