// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuInputs.h"

#include <algorithm>

namespace tessaloom {
namespace {

/// More than most frames have.
constexpr int usualRecords = 16;

constexpr auto bothStages = QRhiShaderResourceBinding::VertexStage | QRhiShaderResourceBinding::FragmentStage;

}  // namespace

GpuInputs::GpuInputs(GpuDevice& device)
    : slotSize_(static_cast<std::size_t>(device.rhi().ubufAligned(largestRecord))),
      rhi_(&device.rhi()),
      buffer_(rhi_->newBuffer(QRhiBuffer::Dynamic, QRhiBuffer::UniformBuffer,
                              usualRecords * static_cast<int>(slotSize_))),
      sampler_(rhi_->newSampler(QRhiSampler::Linear, QRhiSampler::Linear, QRhiSampler::None,
                                QRhiSampler::ClampToEdge, QRhiSampler::ClampToEdge)) {
    buffer_->create();
    sampler_->create();
}

quint32 GpuInputs::add(std::span<const std::byte> record) {
    const std::size_t place = records_.size();
    records_.resize(place + slotSize_);
    std::ranges::copy(record, records_.begin() + static_cast<std::ptrdiff_t>(place));
    return static_cast<quint32>(place);
}

bool GpuInputs::upload(QRhiResourceUpdateBatch& uploads) {
    const int size = static_cast<int>(records_.size());
    if (size == 0) return true;
    if (buffer_->size() < size) {
        buffer_->setSize(2 * size);
        if (!buffer_->create()) return false;
    }
    uploads.updateDynamicBuffer(buffer_.get(), 0, size, records_.data());
    return true;
}

GpuInputs::Bindings GpuInputs::bind(std::span<QRhiTexture* const> textures) const {
    std::vector bindings{QRhiShaderResourceBinding::uniformBufferWithDynamicOffset(
        0, bothStages, buffer_.get(), static_cast<int>(largestRecord))};
    for (QRhiTexture* texture : textures) {
        bindings.push_back(QRhiShaderResourceBinding::sampledTexture(static_cast<int>(bindings.size()),
                                                                     QRhiShaderResourceBinding::FragmentStage,
                                                                     texture, sampler_.get()));
    }
    Bindings made(rhi_->newShaderResourceBindings());
    made->setBindings(bindings.begin(), bindings.end());
    made->create();
    return made;
}

}  // namespace tessaloom
