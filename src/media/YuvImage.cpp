// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/YuvImage.h"

#include <algorithm>

namespace tessaloom {
namespace {

constexpr std::uint8_t blackLuma = 16;
constexpr std::uint8_t neutralChroma = 128;
constexpr std::size_t rowAlignment = 64;

}  // namespace

YuvImage::YuvImage(int width, int height) : width_(width), height_(height) {
    // Twice the alignment for luma gives the half-wide chroma rows the same alignment.
    const std::size_t unit = rowAlignment * 2;
    const std::size_t lumaStride = (static_cast<std::size_t>(width) + unit - 1) / unit * unit;
    const std::size_t lumaSize = lumaStride * static_cast<std::size_t>(height);
    const std::size_t chromaSize = lumaSize / 4;
    lumaStride_ = static_cast<std::ptrdiff_t>(lumaStride);
    offsets_ = {0, lumaSize, lumaSize + chromaSize};
    bytes_.assign(lumaSize + 2 * chromaSize + rowAlignment, neutralChroma);
    std::fill_n(bytes_.begin(), lumaSize, blackLuma);
}

}  // namespace tessaloom
