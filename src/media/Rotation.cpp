// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/Rotation.h"

#include <cstring>

namespace tessaloom {
namespace {

constexpr std::ptrdiff_t pixelBytes = 4;

/// Where in the source a row of the target begins, and the way to its next pixel, in bytes.
struct Walk {
    const std::uint8_t* pixel;
    std::ptrdiff_t step;
};

Walk walkAlong(const BgraView& source, Rotation rotation, int row) {
    const std::uint8_t* lastRow = source.row(source.height - 1);
    const std::ptrdiff_t lastPixel = pixelBytes * (source.width - 1);
    switch (rotation) {
        case Rotation::quarter:
            return {lastRow + pixelBytes * row, -source.stride};
        case Rotation::half:
            return {source.row(source.height - 1 - row) + lastPixel, -pixelBytes};
        case Rotation::threeQuarters:
            return {source.row(0) + lastPixel - pixelBytes * row, source.stride};
        case Rotation::none:
            break;
    }
    return {source.row(row), pixelBytes};
}

}  // namespace

void rotate(const BgraView& source, Rotation rotation, BgraImage& target) {
    const bool swapped = swapsSides(rotation);
    const int width = swapped ? source.height : source.width;
    const int height = swapped ? source.width : source.height;
    if (target.width() != width || target.height() != height) target = BgraImage(width, height);
    for (int y = 0; y < height; ++y) {
        Walk walk = walkAlong(source, rotation, y);
        std::uint8_t* pixel = target.row(y);
        for (int x = 0; x < width; ++x, walk.pixel += walk.step, pixel += pixelBytes)
            std::memcpy(pixel, walk.pixel, static_cast<std::size_t>(pixelBytes));
    }
}

}  // namespace tessaloom
