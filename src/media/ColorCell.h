// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

namespace tessaloom {

/// Colours are counted in cells of four steps a channel.
constexpr int colorCellBits = 6;
constexpr std::size_t colorCellCount = std::size_t{1} << (3 * colorCellBits);

/// The cell of a colour 0xRRGGBB.
constexpr std::size_t colorCell(std::uint32_t color) {
    constexpr std::uint32_t mask = (1U << colorCellBits) - 1;
    constexpr int dropped = 8 - colorCellBits;
    return (color >> (16 + dropped) & mask) << (2 * colorCellBits) |
           (color >> (8 + dropped) & mask) << colorCellBits | (color >> dropped & mask);
}

}  // namespace tessaloom
