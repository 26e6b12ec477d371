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

    /// Null when not even the smallest level fits on the device.
    QRhiShaderResourceBindings* forWidth(double width) const {
        return levels_.empty() ? nullptr : levelForWidth(levels_, width).bindings.get();
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
