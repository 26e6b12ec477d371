// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuStages.h"

#include "base/Log.h"

namespace tessaloom {
namespace {

struct StageSetup {
    const char* shaders;
    int textures;
    GpuBlend blend;
    bool quad = true;
};

// In the order of GpuStage.
constexpr std::array setups{StageSetup{"composite", 2, GpuBlend::none, false},
                            StageSetup{"cursor", 1, GpuBlend::straightAlpha},
                            StageSetup{"ripple", 0, GpuBlend::straightAlpha},
                            StageSetup{"webcam", 3, GpuBlend::straightAlpha},
                            StageSetup{"rounded_rect", 0, GpuBlend::straightAlpha},
                            StageSetup{"chip", 1, GpuBlend::premultipliedAlpha}};

}  // namespace

GpuStages::GpuStages(GpuDevice& device, const GpuInputs& inputs, QRhiRenderPassDescriptor& pass,
                     const QString& shaderFolder, QRhiTexture* texture) {
    static_assert(setups.size() == count);
    try {
        for (std::size_t i = 0; i < count; ++i) {
            const auto& [shaders, textures, blend, quad] = setups[i];
            pipelines_[i] = GpuPipeline::build(device, inputs, pass, shaderFolder,
                                               {shaders, shaders, texture, textures, blend, quad});
        }
    } catch (const GpuPipeline::Failure& failure) {
        pipelineError_ = failure.what();
        qCWarning(Log::renderer, "Failed to build pipeline: %s", failure.what());
    }
}

const GpuPipeline* GpuStages::pipeline(GpuStage stage) const {
    const auto& built = pipelines_[static_cast<std::size_t>(stage)];
    return built ? &*built : nullptr;
}

}  // namespace tessaloom
