// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"
#include "core/WebcamConfig.h"

namespace tessaloom {

/// The camera bubble's width before `pop`, in canvas pixels.
float bubbleBase(const WebcamConfig& config, float canvasWidth);

/// The camera bubble's rectangle in canvas pixels, kept 3 % of the canvas width away from every edge. `pop`
/// scales it about its place. The values are 32-bit floats, widened.
Rect bubbleRect(const WebcamConfig& config, float canvasWidth, float canvasHeight, float pop);

}  // namespace tessaloom
