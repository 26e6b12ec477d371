// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuTexture.h"

#include <algorithm>

namespace tessaloom {
namespace {

const char* bytesOf(BgraView picture) {
    return reinterpret_cast<const char*>(picture.pixels);
}

// Up to the last pixel: the last row need not be padded.
qsizetype byteCount(BgraView picture) {
    return picture.stride * (picture.height - 1) + qsizetype{4} * picture.width;
}

}  // namespace

GpuTexture::GpuTexture(GpuDevice& device, QRhiTexture::Format format, QRhiTexture::Flags flags)
    : device_(&device), texture_(device.rhi().newTexture(format, {1, 1}, 1, flags)) {
    device_->countTextureAllocation();
    allocated_ = texture_->create();
}

bool GpuTexture::resize(QSize size) {
    if (has(size)) return true;
    allocated_ = false;
    identity_ = 0;
    if (std::max(size.width(), size.height()) > device_->largestTextureSide()) return false;
    texture_->setPixelSize(size);
    device_->countTextureAllocation();
    allocated_ = texture_->create();
    return allocated_;
}

bool GpuTexture::upload(BgraView picture, std::uint64_t identity, QRhiResourceUpdateBatch& uploads) {
    if (!resize({picture.width, picture.height})) return false;
    if (identity != 0 && identity == identity_) return true;
    identity_ = identity;
    upload(QByteArray::fromRawData(bytesOf(picture), byteCount(picture)), picture.stride, uploads);
    return true;
}

bool GpuTexture::uploadCopy(BgraView picture, QRhiResourceUpdateBatch& uploads) {
    if (!resize({picture.width, picture.height})) return false;
    identity_ = 0;
    upload(QByteArray(bytesOf(picture), byteCount(picture)), picture.stride, uploads);
    return true;
}

void GpuTexture::upload(const QByteArray& rows, std::ptrdiff_t stride, QRhiResourceUpdateBatch& uploads) {
    QRhiTextureSubresourceUploadDescription content(rows);
    content.setDataStride(static_cast<quint32>(stride));
    uploads.uploadTexture(texture_.get(), QRhiTextureUploadDescription({0, 0, content}));
}

GpuCanvas::GpuCanvas(GpuDevice& device, QRhiTexture::Format format)
    : texture_(device, format, QRhiTexture::RenderTarget | QRhiTexture::UsedAsTransferSource),
      target_(device.rhi().newTextureRenderTarget({QRhiColorAttachment(texture_.texture())})),
      pass_(target_->newCompatibleRenderPassDescriptor()) {
    target_->setRenderPassDescriptor(pass_.get());
    target_->create();
}

bool GpuCanvas::resize(QSize size) {
    return texture_.has(size) || (texture_.resize(size) && target_->create());
}

}  // namespace tessaloom
