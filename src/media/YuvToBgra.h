// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "media/BgraImage.h"

namespace tessaloom {

/// A borrowed 8-bit planar picture: Y, U and V, strides in bytes.
struct YuvView {
    std::array<const std::uint8_t*, 3> planes{};
    std::array<std::ptrdiff_t, 3> strides{};
    int width = 0;
    int height = 0;
    /// One chroma sample for two neighbouring columns or rows.
    bool halfColumns = true;
    bool halfRows = true;
};

/// How a picture's Y, U and V were made of red, green and blue.
struct YuvEncoding {
    enum class Matrix { bt601, bt709, bt2020 };

    Matrix matrix = Matrix::bt709;
    bool fullRange = false;
};

/// Converts each pixel with the chroma sample that covers it; each channel lies within 0.6 of a step of the
/// definition (ITU-R BT.601-7, BT.709-6 and BT.2020-2). Alpha becomes 255. `target` has the picture's size.
/// Callable from any thread.
void yuvToBgra(const YuvView& source, YuvEncoding encoding, BgraImage& target);

}  // namespace tessaloom
