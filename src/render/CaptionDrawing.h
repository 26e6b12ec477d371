// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

#include "core/CaptionChip.h"
#include "core/Geometry.h"
#include "render/CaptionRaster.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// How a caption is drawn on a canvas, from bottom to top.
struct CaptionDrawing {
    struct BoxedWord {
        ChipUniforms chip;
        /// A view into the chip's text.
        std::string_view word;

        bool operator==(const BoxedWord&) const = default;
    };

    std::optional<RoundedRectUniforms> plate;
    std::optional<RoundedRectUniforms> underline;
    /// The line's raster.
    ChipUniforms text;
    /// The spoken word once more on its box, which covers it in the line.
    std::optional<BoxedWord> boxedWord;

    bool operator==(const CaptionDrawing&) const = default;
};

/// `layout` is that of the chip's text. A spoken word that it does not have is not marked. Pure, allocates
/// nothing.
CaptionDrawing captionDrawing(const CaptionChip& chip, const CaptionLayout& layout, float canvasWidth,
                              float canvasHeight, const std::optional<Rect>& keepOut);

/// The smallest rectangle around all its parts, in canvas pixels.
Rect extentOf(const CaptionDrawing& drawing);

}  // namespace tessaloom
