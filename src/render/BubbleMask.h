// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/WorkerPool.h"
#include "render/PixelSpan.h"
#include "render/RoundedBox.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// All that a camera bubble with its shadow may change, in canvas pixels.
Rect bubbleExtent(const WebcamUniforms& uniforms);

/// What each canvas pixel shows in and around the camera bubble: camera, border ring, shadow. Kept from frame
/// to frame, since the bubble rarely moves.
class BubbleMask {
  public:
    /// Parts of a pixel in 1/32768; the rest of it is the shadow's black.
    struct Mix {
        std::uint16_t camera = 0;
        std::uint16_t border = 0;
        std::uint16_t canvas = 0;
    };

    struct Row {
        /// The pixels that the bubble or its shadow changes.
        PixelSpan touched;
        /// Those of them that show nothing but the camera; empty at `touched.last` when there are none.
        PixelSpan inner;
        /// Where the row's other pixels start in the list.
        std::size_t start = 0;
    };

    /// Computes the mask anew unless it is for the same bubble and canvas (pixels, positive) already.
    void prepare(const WebcamUniforms& uniforms, int canvasWidth, int canvasHeight, WorkerPool& pool);

    /// The rows that the bubble touches, and all their columns.
    PixelSpan rows() const { return rows_; }
    PixelSpan columns() const { return columns_; }
    const Row& row(int y) const { return list_[static_cast<std::size_t>(y - rows_.first)]; }

    /// The mixes of `row` from its first touched pixel on, without the inner ones.
    const Mix* mixes(const Row& row) const { return mixes_.data() + row.start; }

  private:
    double distance(double x, double y) const;
    Row rowAt(int y) const;
    Mix mixAt(int x, int y) const;
    void fillRow(int y);

    WebcamUniforms bubble_;
    int canvasWidth_ = 0;
    int canvasHeight_ = 0;
    PixelSpan rows_;
    PixelSpan columns_;
    bool isCircle_ = false;
    RoundedBox outline_;
    std::vector<Row> list_;
    std::vector<Mix> mixes_;
};

}  // namespace tessaloom
