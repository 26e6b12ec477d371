// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <stdexcept>
#include <string_view>

#include "render/Renderer.h"

namespace tessaloom {

/// The renderer asked for can't be had; `what()` says what to do.
class RendererUnavailable : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What draws fastest on this machine: a GPU, on OpenGL where there is an X display, else on Vulkan; the CPU
/// where there is none but a software GPU. `wanted` overrides that (TESSALOOM_RENDERER): "cpu", or "gpu",
/// which takes a software GPU too. Throws RendererUnavailable. Main thread, where the renderer must go again.
std::unique_ptr<Renderer> makeRenderer(std::string_view wanted = {});

}  // namespace tessaloom
