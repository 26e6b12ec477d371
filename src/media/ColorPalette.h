// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "media/BgraImage.h"
#include "media/ColorMemo.h"

namespace tessaloom {

/// One to 255 colours, and which of them comes nearest to another. Remembers its answers, so one thread at a
/// time.
class ColorPalette {
  public:
    /// Colours are 0xRRGGBB.
    explicit ColorPalette(std::vector<std::uint32_t> colors);

    std::span<const std::uint32_t> colors() const { return std::span(table_).first(red_.size()); }

    /// The index behind the last colour, which stands for none.
    std::uint8_t transparent() const { return static_cast<std::uint8_t>(red_.size()); }
    /// The colours and that one.
    std::span<const std::uint32_t> table() const { return table_; }

    /// The index of the nearest colour, by squared distance.
    std::uint8_t nearest(std::uint32_t color);

  private:
    std::uint8_t search(std::uint32_t color) const;

    std::vector<std::uint32_t> table_;
    std::vector<std::int32_t> red_;
    std::vector<std::int32_t> green_;
    std::vector<std::int32_t> blue_;
    ColorMemo<std::uint8_t> answers_;
};

/// The squared distance of two colours 0xRRGGBB.
inline int squaredDistance(std::uint32_t a, std::uint32_t b) {
    const auto difference = [a, b](int shift) {
        return static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
    };
    const int red = difference(16);
    const int green = difference(8);
    const int blue = difference(0);
    return red * red + green * green + blue * blue;
}

/// A pixel as 0xRRGGBB.
inline std::uint32_t colorAt(const BgraView& picture, int x, int y) {
    const std::uint8_t* pixel = picture.row(y) + std::ptrdiff_t{4} * x;
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

}  // namespace tessaloom
