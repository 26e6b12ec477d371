// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "render/AxisMapping.h"
#include "render/PixelSpan.h"

namespace tessaloom {

/// Which two texels each canvas column mixes, and how: computed once per frame, used for each of its rows.
class ColumnTable {
  public:
    /// For the canvas pixels `columns`, reading rows of `pictureWidth` (positive) texels. Does nothing when
    /// it is for them already, and allocates only to grow.
    void prepare(const AxisMapping& mapping, int pictureWidth, PixelSpan columns);

    /// The texels that the canvas pixels `span` (not empty, within the prepared columns) read. One past the
    /// last texel is among them when the picture has a single column; its weight is 0.
    PixelSpan texels(PixelSpan span) const;

    /// Scales a picture's row, of which only `texels(span)` need be there, to the canvas pixels `span`; `out`
    /// takes the first of them.
    void resample(const std::uint8_t* row, PixelSpan span, std::uint8_t* out) const;

  private:
    std::size_t slot(int column) const { return static_cast<std::size_t>(column - columns_.first); }

    AxisMapping mapping_;
    int pictureWidth_ = 0;
    PixelSpan columns_;
    std::vector<std::int32_t> texels_;
    /// Four equal weights per column, one per channel.
    std::vector<std::int16_t> weights_;
    /// The first column's texel when every column is exactly the texel after the one before.
    std::optional<std::int64_t> unscaledStart_;
};

}  // namespace tessaloom
