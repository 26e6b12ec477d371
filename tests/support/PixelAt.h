// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

#include "media/BgraImage.h"

namespace tessaloom::test {

/// The four bytes of one pixel: blue, green, red, alpha.
inline const std::uint8_t* pixelAt(BgraView picture, int x, int y) {
    return picture.row(y) + static_cast<std::ptrdiff_t>(x) * 4;
}
inline const std::uint8_t* pixelAt(const BgraImage& picture, int x, int y) {
    return pixelAt(picture.view(), x, y);
}
inline std::uint8_t* pixelAt(BgraImage& picture, int x, int y) {
    return picture.row(y) + static_cast<std::ptrdiff_t>(x) * 4;
}

/// Bytes of `pixels` neighbouring pixels.
constexpr std::size_t bytesOf(int pixels) {
    return static_cast<std::size_t>(pixels) * 4;
}

}  // namespace tessaloom::test
