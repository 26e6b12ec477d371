// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "media/BgraImage.h"
#include "render/AxisMapping.h"
#include "render/ColumnTable.h"
#include "render/PixelSpan.h"
#include "render/RowScratch.h"

namespace tessaloom {

/// Reads a picture, scaled and softened: each pixel is the mean of 5 by 5 bilinear samples that lie half a
/// radius apart. The grid is separable, so each row costs five rows and five columns, not twenty-five
/// samples.
class BlurredPictureReader {
  public:
    /// `radius` is a fraction of the picture's width, covering the same number of texels on both axes.
    /// Otherwise as PictureReader.
    void prepare(BgraView picture, const AxisMapping& across, const AxisMapping& down, double radius,
                 PixelSpan columns);

    /// As PictureReader::readRow; the scratch must be grown to the canvas width too.
    void readRow(int y, PixelSpan span, RowScratch& scratch, std::uint8_t* out) const;

  private:
    static constexpr int taps = 5;
    static constexpr int middleTap = 2;

    PixelSpan texels(PixelSpan span) const;
    void averageRows(int y, PixelSpan texels, RowScratch& scratch) const;

    BgraView picture_;
    AxisMapping down_;
    double stepDown_ = 0;
    std::array<ColumnTable, taps> columns_;
};

}  // namespace tessaloom
