// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tessaloom {

/// A borrowed, read-only 8-bit picture in memory order blue, green, red, alpha; the first row is the top one.
/// Valid only while its owner lives. `stride` is in bytes, at least four times `width`.
struct BgraView {
    const std::uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;

    bool empty() const { return width <= 0 || height <= 0; }
    const std::uint8_t* row(int y) const { return pixels + y * stride; }
};

/// An owned 8-bit picture of the same layout, rows aligned to 64 bytes. A new one holds unspecified pixels.
class BgraImage {
  public:
    BgraImage() = default;
    BgraImage(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    std::ptrdiff_t stride() const { return stride_; }
    bool empty() const { return width_ <= 0 || height_ <= 0; }

    std::uint8_t* row(int y) { return pixels_.get() + y * stride_; }
    const std::uint8_t* row(int y) const { return pixels_.get() + y * stride_; }
    BgraView view() const { return {pixels_.get(), width_, height_, stride_}; }

  private:
    struct AlignedDelete {
        void operator()(std::uint8_t* pixels) const;
    };

    int width_ = 0;
    int height_ = 0;
    std::ptrdiff_t stride_ = 0;
    std::unique_ptr<std::uint8_t[], AlignedDelete> pixels_;
};

/// `target` becomes a picture like `source`, in its own memory if that has the size.
void copyPixels(const BgraView& source, BgraImage& target);

}  // namespace tessaloom
