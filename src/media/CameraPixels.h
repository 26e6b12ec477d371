// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "media/BgraImage.h"
#include "media/YuvToBgra.h"

namespace tessaloom {

/// A picture as cameras deliver it.
struct CameraBuffer {
    enum class Layout {
        bgrx,   ///< four bytes a pixel
        rgbx,   ///< four bytes a pixel
        yuyv,   ///< Y U Y V for two pixels
        nv12,   ///< a plane of Y, then one of U and V for squares of four
        i420,   ///< planes of Y, then U, then V for squares of four
        mjpeg,  ///< a JPEG file, which brings its own size
    };

    Layout layout = Layout::yuyv;
    YuvEncoding encoding;  ///< for the YUV layouts
    int width = 0;         ///< even, as the height is
    int height = 0;
    /// Of the first plane, in bytes; 0 when its rows follow each other closely, as the planes do.
    std::ptrdiff_t stride = 0;
    std::span<const std::uint8_t> bytes;
};

/// Turns what cameras deliver into BGRA. Used by one thread at a time.
class CameraPixels {
  public:
    CameraPixels();
    ~CameraPixels();

    /// Of even size, an odd row or column at the end left out; valid until the next call. Throws MediaError
    /// for a buffer that is too short or can't be decoded.
    BgraView toBgra(CameraBuffer buffer);

  private:
    class JpegDecoder;

    BgraView swapRedAndBlue(const CameraBuffer& buffer);
    BgraView convertYuv(const CameraBuffer& buffer);
    YuvView unpackYuyv(const CameraBuffer& buffer);
    YuvView unpackNv12(const CameraBuffer& buffer);

    BgraImage image_;
    std::vector<std::uint8_t> planes_;
    std::unique_ptr<JpegDecoder> jpeg_;
};

}  // namespace tessaloom
