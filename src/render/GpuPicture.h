// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "render/GpuInputs.h"
#include "render/PictureLevels.h"

namespace tessaloom {

/// A still picture on the device, in all its levels, each bound for a stage that reads one texture.
class GpuPicture {
  public:
    /// Levels beyond the device's limit are left out.
    GpuPicture(GpuDevice& device, const GpuInputs& inputs, const PictureLevels& levels,
               QRhiResourceUpdateBatch& uploads);

    /// Whether not even the smallest level fits on the device.
    bool empty() const { return levels_.empty(); }
    /// Of a picture that is not empty: what reads its `levelForWidth`.
    QRhiShaderResourceBindings& forWidth(double width) const {
        return *levelForWidth(levels_, width).bindings;
    }

  private:
    struct Level {
        GpuTexture texture;
        GpuInputs::Bindings bindings;

        int width() const { return texture.width(); }
    };

    std::vector<Level> levels_;
};

}  // namespace tessaloom
