// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "render/GpuDevice.h"
#include "render/GpuRenderer.h"

namespace tessaloom::test {

/// Both graphics interfaces, for value-parameterised tests; OpenGL runs on a private X server.
inline constexpr std::array everyGpuApi{GpuApi::openGl, GpuApi::vulkan};

std::string nameOf(GpuApi api);

/// Takes a software GPU too, and no installed cursor themes. Null when the machine has no such interface.
std::unique_ptr<GpuRenderer> openGpuRenderer(GpuApi api, std::string shaderFolder = ":/tessaloom/shaders");

/// A device to use on this thread.
struct GpuTestDevice {
    std::unique_ptr<QOffscreenSurface> surface;
    /// Null when the machine has no such interface.
    std::unique_ptr<GpuDevice> device;
};
GpuTestDevice openGpuDevice(GpuApi api);

}  // namespace tessaloom::test
