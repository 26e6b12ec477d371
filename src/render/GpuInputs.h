// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "render/GpuTexture.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// What the draws of a frame read: their records, all in one buffer at binding 0, and textures from binding 1
/// on, filtered linearly and clamped at the edge.
class GpuInputs {
  public:
    using Bindings = std::unique_ptr<QRhiShaderResourceBindings>;

    explicit GpuInputs(GpuDevice& device);

    /// Forgets the records of the frame before.
    void clear() { records_.clear(); }
    /// The record's place in the buffer.
    template <class Record>
    quint32 add(const Record& record) {
        static_assert(sizeof(Record) <= largestRecord);
        return add(std::as_bytes(std::span(&record, 1)));
    }
    /// False when the device has no memory for them.
    bool upload(QRhiResourceUpdateBatch& uploads);

    /// For draws that read these textures. They stay bound also when they change their size.
    Bindings bind(std::span<QRhiTexture* const> textures) const;

  private:
    static constexpr std::size_t largestRecord = sizeof(CompositeUniforms);

    quint32 add(std::span<const std::byte> record);

    std::size_t slotSize_;
    std::vector<std::byte> records_;
    QRhi* rhi_;
    std::unique_ptr<QRhiBuffer> buffer_;
    std::unique_ptr<QRhiSampler> sampler_;
};

}  // namespace tessaloom
