// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>

#include "render/GpuPipeline.h"

namespace tessaloom {

/// The drawing stages, in the order in which they are built.
enum class GpuStage { composite, cursor, ripple, webcam, roundedRect, chip };

/// The pipelines of all stages. The first that can't be built ends the building: it and the later ones stay
/// absent, and what they would draw is left out.
class GpuStages {
  public:
    /// For targets of the kind of `pass`; `texture` is any, to stand for those that stages read.
    GpuStages(GpuDevice& device, const GpuInputs& inputs, QRhiRenderPassDescriptor& pass,
              const QString& shaderFolder, QRhiTexture* texture);

    /// Null when it is absent.
    const GpuPipeline* pipeline(GpuStage stage) const;
    /// Why stages are absent.
    const std::optional<std::string>& pipelineError() const { return pipelineError_; }

  private:
    static constexpr std::size_t count = 6;

    std::array<std::optional<GpuPipeline>, count> pipelines_;
    std::optional<std::string> pipelineError_;
};

}  // namespace tessaloom
