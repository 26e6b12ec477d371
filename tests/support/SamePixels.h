// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstring>

#include "media/BgraImage.h"
#include "media/YuvImage.h"
#include "support/PixelAt.h"

namespace tessaloom::test {

/// Whether two pictures are the same in every bit.
inline bool samePixels(const BgraImage& a, const BgraImage& b) {
    if (a.width() != b.width() || a.height() != b.height()) return false;
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.row(y), b.row(y), bytesOf(a.width())) != 0) return false;
    }
    return true;
}

inline bool samePixels(const YuvImage& a, const YuvImage& b) {
    if (a.width() != b.width() || a.height() != b.height()) return false;
    for (int plane = 0; plane < 3; ++plane) {
        const int scale = plane == 0 ? 1 : 2;
        for (int y = 0; y < a.height() / scale; ++y) {
            const std::uint8_t* row = a.plane(plane) + y * a.stride(plane);
            const std::uint8_t* other = b.plane(plane) + y * b.stride(plane);
            if (std::memcmp(row, other, static_cast<std::size_t>(a.width() / scale)) != 0) return false;
        }
    }
    return true;
}

}  // namespace tessaloom::test
