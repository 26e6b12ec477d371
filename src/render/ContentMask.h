// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/PixelSpan.h"
#include "render/RoundedBox.h"

namespace tessaloom {

/// How much of each canvas pixel the framed recording covers: wholly inside its outline, partly in the
/// two-pixel soft edge, not at all outside. Kept from frame to frame, since zooming does not change it.
class ContentMask {
  public:
    struct Row {
        /// The pixels that show any of the recording.
        PixelSpan touched;
        /// Those of them that show nothing else; empty at `touched.last` when there are none.
        PixelSpan covered;
        /// Where the row's soft pixels start in the list of coverages.
        std::size_t softStart = 0;
    };

    /// Computes the mask anew unless it is for the same outline and canvas (pixels, positive) already.
    void prepare(const RoundedBox& outline, int canvasWidth, int canvasHeight);

    const RoundedBox& outline() const { return outline_; }
    const Row& row(int y) const { return rows_[static_cast<std::size_t>(y)]; }

    /// Coverage, 0 to 32768, of the row's soft pixels: those left of `covered`, then those right of it.
    const std::uint16_t* softCoverage(const Row& row) const { return coverage_.data() + row.softStart; }

  private:
    void addRow(int y);

    RoundedBox outline_;
    int canvasWidth_ = 0;
    std::vector<Row> rows_;
    std::vector<std::uint16_t> coverage_;
};

}  // namespace tessaloom
