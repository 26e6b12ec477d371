// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Geometry.h"
#include "motion/KeystrokeTrack.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// How a key label's raster of this many pixels is drawn on a canvas.
ChipUniforms keystrokeDrawing(const KeystrokeChip& chip, Size rasterPixels, float canvasWidth,
                              float canvasHeight);

}  // namespace tessaloom
