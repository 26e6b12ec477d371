// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaloom {

/// An owned planar 4:2:0 picture (Y, then U and V at half size), BT.709 limited range unless its owner says
/// otherwise: what goes into every encoder. Width and height are even.
class YuvImage {
  public:
    YuvImage() = default;
    /// Starts black.
    YuvImage(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }

    /// `plane` 0 is Y, 1 is U, 2 is V; strides are in bytes.
    std::uint8_t* plane(int plane) { return bytes_.data() + offsets_[static_cast<std::size_t>(plane)]; }
    const std::uint8_t* plane(int plane) const {
        return bytes_.data() + offsets_[static_cast<std::size_t>(plane)];
    }
    std::ptrdiff_t stride(int plane) const { return plane == 0 ? lumaStride_ : lumaStride_ / 2; }

  private:
    int width_ = 0;
    int height_ = 0;
    std::ptrdiff_t lumaStride_ = 0;
    std::array<std::size_t, 3> offsets_{};
    std::vector<std::uint8_t> bytes_;
};

}  // namespace tessaloom
