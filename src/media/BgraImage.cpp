// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/BgraImage.h"

#include <cstring>
#include <new>

namespace tessaloom {
namespace {

constexpr std::size_t rowAlignment = 64;

std::ptrdiff_t alignedStride(int width) {
    const std::size_t bytes = static_cast<std::size_t>(width) * 4;
    return static_cast<std::ptrdiff_t>((bytes + rowAlignment - 1) / rowAlignment * rowAlignment);
}

}  // namespace

void BgraImage::AlignedDelete::operator()(std::uint8_t* pixels) const {
    ::operator delete[](pixels, std::align_val_t{rowAlignment});
}

BgraImage::BgraImage(int width, int height) : width_(width), height_(height), stride_(alignedStride(width)) {
    // One spare alignment unit lets SIMD rows read past the last pixel.
    const auto size = static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height) + rowAlignment;
    pixels_.reset(static_cast<std::uint8_t*>(::operator new[](size, std::align_val_t{rowAlignment})));
}

void copyPixels(const BgraView& source, BgraImage& target) {
    if (target.width() != source.width || target.height() != source.height)
        target = BgraImage(source.width, source.height);
    for (int y = 0; y < source.height; ++y)
        std::memcpy(target.row(y), source.row(y), static_cast<std::size_t>(source.width) * 4);
}

}  // namespace tessaloom
