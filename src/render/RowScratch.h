// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaloom {

/// The rows that one thread needs while it draws one row of a frame. Grows to the widest picture met and then
/// stays, so that running frames allocate nothing.
struct RowScratch {
    /// A row of a source picture, mixed from two of its rows.
    std::vector<std::uint8_t> mixed;
    /// A row of a source picture, averaged over several places.
    std::vector<std::uint8_t> averaged;
    /// A row of the canvas.
    std::vector<std::uint8_t> canvas;
    /// Two more rows of the canvas: a blurred picture and its matte.
    std::vector<std::uint8_t> blurred;
    std::vector<std::uint8_t> matte;
    std::vector<std::uint16_t> sums;

    /// Widths in pixels.
    void grow(int pictureWidth, int canvasWidth) {
        growTo(mixed, pictureWidth + 1);
        growTo(averaged, pictureWidth + 1);
        growTo(canvas, canvasWidth);
        growTo(blurred, canvasWidth);
        growTo(matte, canvasWidth);
        growTo(sums, pictureWidth + 1);
        growTo(sums, canvasWidth);
    }

  private:
    template <class Channel>
    static void growTo(std::vector<Channel>& row, int pixels) {
        const std::size_t channels = static_cast<std::size_t>(pixels) * 4;
        if (row.size() < channels) row.resize(channels);
    }
};

}  // namespace tessaloom
