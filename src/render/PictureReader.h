// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "media/BgraImage.h"
#include "render/AxisMapping.h"
#include "render/ColumnTable.h"
#include "render/PixelSpan.h"
#include "render/RowScratch.h"

namespace tessaloom {

/// The row of `picture` at a place between two of its rows; only `texels` of it are valid. They may reach one
/// texel past a picture of a single column: it can be read but says nothing. Points into the picture or into
/// `scratch.mixed`.
const std::uint8_t* mixedRow(BgraView picture, TexelPosition position, PixelSpan texels, RowScratch& scratch);

/// Reads a picture, scaled, row by row with bilinear filtering, clamped at the picture's edge.
class PictureReader {
  public:
    /// The picture (not empty) must outlive the reading. `columns` are the canvas pixels that may be read.
    void prepare(BgraView picture, const AxisMapping& across, const AxisMapping& down, PixelSpan columns);

    /// Writes the pixels `span` (within the prepared columns) of canvas row `y`; `out` takes the first of
    /// them. Several threads may read at once, each with its own scratch, grown to the picture's width.
    void readRow(int y, PixelSpan span, RowScratch& scratch, std::uint8_t* out) const;

  private:
    BgraView picture_;
    AxisMapping down_;
    ColumnTable columns_;
};

}  // namespace tessaloom
