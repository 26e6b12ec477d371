// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGui/private/qrhi_p.h>

#include <QOffscreenSurface>
#include <memory>
#include <string>

namespace tessaloom {

enum class GpuApi { openGl, vulkan };

/// A graphics device without a window. Belongs to the thread that opens it, as does all that is made of it,
/// which must go first.
class GpuDevice {
  public:
    /// Needs the X server of DISPLAY. `surface` comes from `makeOpenGlSurface` and outlives the device. Null
    /// when there is no OpenGL 3.3 here.
    static std::unique_ptr<GpuDevice> openOpenGl(QOffscreenSurface& surface);
    /// On the main thread, where it must go again too.
    static std::unique_ptr<QOffscreenSurface> makeOpenGlSurface();

    /// Needs no display. Null when there is no Vulkan here.
    static std::unique_ptr<GpuDevice> openVulkan();

    QRhi& rhi() { return *rhi_; }
    /// As its driver calls it.
    std::string name() const;
    /// Whether the processor does the work of a GPU.
    bool isSoftware() const;
    /// Pixels.
    int largestTextureSide() const { return rhi_->resourceLimit(QRhi::TextureSizeMax); }

    /// How often texture memory was allocated, which running frames must not do.
    int textureAllocations() const { return textureAllocations_; }
    void countTextureAllocation() { ++textureAllocations_; }

  private:
    explicit GpuDevice(std::unique_ptr<QRhi> rhi);
    static std::unique_ptr<GpuDevice> usable(QRhi* created);

    std::unique_ptr<QRhi> rhi_;
    int textureAllocations_ = 0;
};

}  // namespace tessaloom
