// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "media/BgraImage.h"
#include "render/GpuDevice.h"

namespace tessaloom {

/// Texture memory that stays as long as its size does. The one place where textures are made.
class GpuTexture {
  public:
    /// Starts with a single texel, so that it can be bound at once.
    GpuTexture(GpuDevice& device, QRhiTexture::Format format, QRhiTexture::Flags flags = {});

    /// False when it is beyond the device's limit or memory. New texels are unspecified.
    bool resize(QSize size);
    /// Whether there is memory of just this size.
    bool has(QSize size) const { return allocated_ && texture_->pixelSize() == size; }

    /// Takes size and content of a picture (not empty), whose pixels must stay until `uploads` is carried
    /// out. Another number for every other content saves uploading it again; 0 is never known. False as for
    /// `resize`.
    bool upload(BgraView picture, std::uint64_t identity, QRhiResourceUpdateBatch& uploads);
    /// As `upload`, but the pixels need not stay.
    bool uploadCopy(BgraView picture, QRhiResourceUpdateBatch& uploads);

    QRhiTexture* texture() const { return texture_.get(); }
    QSize size() const { return texture_->pixelSize(); }
    int width() const { return size().width(); }

  private:
    void upload(const QByteArray& rows, std::ptrdiff_t stride, QRhiResourceUpdateBatch& uploads);

    GpuDevice* device_;
    std::unique_ptr<QRhiTexture> texture_;
    bool allocated_ = false;
    std::uint64_t identity_ = 0;
};

/// A texture to draw into.
class GpuCanvas {
  public:
    GpuCanvas(GpuDevice& device, QRhiTexture::Format format);

    bool resize(QSize size);

    QRhiTexture* texture() const { return texture_.texture(); }
    QSize size() const { return texture_.size(); }
    QRhiTextureRenderTarget* target() const { return target_.get(); }
    QRhiRenderPassDescriptor* pass() const { return pass_.get(); }

  private:
    GpuTexture texture_;
    std::unique_ptr<QRhiTextureRenderTarget> target_;
    std::unique_ptr<QRhiRenderPassDescriptor> pass_;
};

}  // namespace tessaloom
