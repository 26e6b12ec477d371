// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "media/BgraImage.h"
#include "media/ColorPalette.h"
#include "media/DitheredPalette.h"
#include "media/LzwEncoder.h"
#include "media/PixelRect.h"

namespace tessaloom {

/// What a viewer of a growing GIF sees so far, so that a new picture needs only the pixels that differ.
class GifCanvas {
  public:
    /// A part of a picture as indices into a palette and one more, `transparent`, which leaves what is shown.
    struct Update {
        PixelRect area;
        /// The area's pixels row by row; valid until the next update.
        std::span<const IndexedPixel> pixels;
        std::uint8_t transparent = 0;
    };

    /// Shows `picture`; the first one is drawn whole, and all have its size. What is shown stays where the
    /// palette has nothing clearly better for it.
    Update show(const BgraView& picture, DitheredPalette& dithered);

    /// Changes nothing: a single transparent pixel.
    Update showAgain(const ColorPalette& palette);

  private:
    /// A row's pixels from `left` to before `right`.
    struct Columns {
        int left = 0;
        int right = 0;
    };

    Columns quantizeRow(int y, const BgraView& picture, DitheredPalette& dithered);
    Columns leaveRow(int y, std::uint8_t transparent);
    Update cutOut(PixelRect area, std::uint8_t transparent);

    BgraImage source_;                  ///< the picture shown last
    std::vector<std::uint32_t> shown_;  ///< 0xRRGGBB
    std::vector<IndexedPixel> pixels_;  ///< of the whole picture
    std::vector<IndexedPixel> update_;
};

}  // namespace tessaloom
