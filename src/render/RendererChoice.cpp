// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RendererChoice.h"

#include <string>

#include "base/Log.h"
#include "render/CpuRenderer.h"
#include "render/GpuDevice.h"
#include "render/GpuRenderer.h"

namespace tessaloom {
namespace {

std::unique_ptr<Renderer> openGpu(GpuRenderer::Accept accept) {
    for (const GpuApi api : {GpuApi::openGl, GpuApi::vulkan}) {
        auto renderer = GpuRenderer::open(api, {.accept = accept});
        // One that leaves parts of a frame out is no choice while another draws them all.
        if (renderer && !renderer->pipelineError()) {
            qCInfo(Log::renderer, "Drawing on %s", renderer->deviceName().c_str());
            return renderer;
        }
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<Renderer> makeRenderer(std::string_view wanted) {
    if (!wanted.empty() && wanted != "gpu" && wanted != "cpu") {
        throw RendererUnavailable("TESSALOOM_RENDERER is \"" + std::string(wanted) +
                                  "\". Set it to gpu or cpu, or unset it.");
    }
    if (wanted == "gpu") {
        auto renderer = openGpu(GpuRenderer::Accept::anyGpu);
        if (!renderer) {
            throw RendererUnavailable(
                "There is no GPU with OpenGL 3.3 or Vulkan here. Unset TESSALOOM_RENDERER to draw without "
                "one.");
        }
        return renderer;
    }
    if (wanted.empty()) {
        if (auto renderer = openGpu(GpuRenderer::Accept::realGpu)) return renderer;
    }
    return std::make_unique<CpuRenderer>();
}

}  // namespace tessaloom
