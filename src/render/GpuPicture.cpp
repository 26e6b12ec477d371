// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuPicture.h"

#include <array>
#include <utility>

namespace tessaloom {

GpuPicture::GpuPicture(GpuDevice& device, const GpuInputs& inputs, const PictureLevels& levels,
                       QRhiResourceUpdateBatch& uploads) {
    for (const BgraImage& level : levels.levels()) {
        GpuTexture texture(device, QRhiTexture::BGRA8);
        if (!texture.uploadCopy(level.view(), uploads)) continue;
        auto bindings = inputs.bind(std::array{texture.texture()});
        levels_.push_back({std::move(texture), std::move(bindings)});
    }
}

}  // namespace tessaloom
