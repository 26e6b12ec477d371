// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/LibavHandles.h"
#include "media/SurfaceDevice.h"
#include "media/YuvImage.h"

namespace tessaloom {

/// Brings pictures of one size into a graphics device's memory, as surfaces of NV12, which every device
/// knows. Used by one thread at a time. Every operation throws EncodingError with the system's reason.
/// Included by this folder's source files only.
class SurfaceUpload {
  public:
    /// Opens the device, driver included; width and height, in pixels, are even.
    static SurfaceUpload open(const SurfaceDevice& device, int width, int height);

    /// Tells an encoder that isn't open yet which surfaces it is going to get.
    void announceTo(AVCodecContext& encoder) const;

    /// Makes the empty frame a surface that shows `image`, which is not needed any more afterwards.
    void upload(const YuvImage& image, AVFrame& surface) const;

  private:
    explicit SurfaceUpload(LibavHandle<AVBufferRef> surfaces);

    /// Where surfaces come from; keeps the device open.
    LibavHandle<AVBufferRef> surfaces_;
};

}  // namespace tessaloom
