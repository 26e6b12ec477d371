// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "render/PictureReader.h"
#include "render/RoundedBox.h"

namespace tessaloom {

/// Lays a premultiplied picture over the canvas: the cursor, key labels, caption text.
class PictureStage {
  public:
    struct Placement {
        /// Where the picture goes, in canvas pixels.
        Rect rect;
        /// 0 to 1, over all of it.
        double opacity = 1;
        /// Nothing is drawn outside of it (a hard edge).
        std::optional<RoundedBox> clip;
    };

    /// Once per frame, before its rows. The picture (not empty) must outlive them.
    void prepare(BgraView picture, const Placement& placement, int canvasWidth, int canvasHeight);
    /// Draws nothing until the next `prepare`.
    void clear() { rows_ = {}; }

    /// Draws over the pixels `columns` of canvas row `y`. Several threads may draw at once, each with its own
    /// scratch, grown to canvas and picture.
    void drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const;

  private:
    int canvasWidth_ = 0;
    PixelSpan rows_;
    PixelSpan columns_;
    std::optional<RoundedBox> clip_;
    /// 0 to 256.
    std::uint16_t opacity_ = 0;
    PictureReader reader_;
};

}  // namespace tessaloom
