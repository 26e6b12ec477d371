// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuTestDevice.h"

#include <cstdlib>

#include "support/VirtualDesktop.h"

namespace tessaloom::test {
namespace {

/// One X server for all tests of this process; Qt opens it with its first OpenGL context.
void startDisplayFor(GpuApi api) {
    if (api != GpuApi::openGl) return;
    static const VirtualDesktop desktop(64, 64);
    setenv("DISPLAY", desktop.displayName().c_str(), 1);
}

}  // namespace

std::string nameOf(GpuApi api) {
    return api == GpuApi::openGl ? "OpenGl" : "Vulkan";
}

std::unique_ptr<GpuRenderer> openGpuRenderer(GpuApi api, std::string shaderFolder) {
    startDisplayFor(api);
    return GpuRenderer::open(
        api, {.accept = GpuRenderer::Accept::anyGpu, .themes = {}, .shaderFolder = std::move(shaderFolder)});
}

GpuTestDevice openGpuDevice(GpuApi api) {
    startDisplayFor(api);
    GpuTestDevice opened;
    if (api == GpuApi::openGl) opened.surface = GpuDevice::makeOpenGlSurface();
    opened.device = opened.surface ? GpuDevice::openOpenGl(*opened.surface) : GpuDevice::openVulkan();
    return opened;
}

}  // namespace tessaloom::test
