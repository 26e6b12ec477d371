// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/Geometry.h"
#include "media/BgraImage.h"

namespace tessaloom {

/// Where things are in a caption's raster, in raster points. The origin of the rectangles is the bottom left.
struct CaptionLayout {
    Size size;
    /// Where a plate goes: around the text with its padding.
    Rect plateRect;
    /// One per word, in word order, all of one height.
    std::vector<Rect> wordRects;

    bool operator==(const CaptionLayout&) const = default;
};

/// A caption's words with their shadow, in `rasterScale` premultiplied pixels per point. Neither plate nor
/// mark is in it, so that one raster serves every background and every active word.
struct CaptionRaster {
    BgraImage pixels;
    CaptionLayout layout;
};

/// Draws `text` in the bold system font at size 90, wrapped at 2600 points and centred. A word too wide for a
/// line stands alone and whole. Right-to-left text fills its lines from the right. Nothing when the raster
/// would be too large. Main thread.
std::optional<CaptionRaster> captionRaster(std::string_view text, std::string_view colorHex, bool uppercase);

}  // namespace tessaloom
