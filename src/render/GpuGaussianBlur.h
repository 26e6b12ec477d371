// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

#include "render/GpuPipeline.h"

namespace tessaloom {

/// Blurs a texture as a Gaussian of any width does, edges repeated outwards, within 1.5 % of full scale. The
/// picture, with a margin of its repeated edges, is shrunk until the Gaussian is a few texels wide, blurred
/// there, and grown again. Its memory stays as long as sizes do.
class GpuGaussianBlur {
  public:
    /// `source` must outlive it. Throws GpuPipeline::Failure.
    GpuGaussianBlur(GpuDevice& device, GpuInputs& inputs, const QString& shaderFolder,
                    const GpuTexture& source);

    /// Before the frame: puts what its draws need into the inputs. `sigma` in texels of the source, at
    /// least 1. False when the device has no memory for it.
    bool prepare(double sigma);
    /// Within the frame, outside of its passes.
    void draw(QRhiCommandBuffer& commands);

    /// Of the source's size.
    const GpuCanvas& result() const { return blurred_; }

  private:
    struct Pass {
        GpuCanvas* target;
        GpuPipeline pipeline;
        GpuInputs::Bindings bindings;
        quint32 record = 0;
    };

    GpuInputs* inputs_;
    const GpuTexture* source_;
    GpuCanvas shrunk_;
    GpuCanvas blurredAcross_;
    GpuCanvas blurred_;
    /// Shrinks, blurs across, blurs down, grows.
    std::vector<Pass> passes_;
};

}  // namespace tessaloom
