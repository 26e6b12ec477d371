// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "render/PixelSpan.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// Draws one click ring over the pixels `columns` of row `y` of a canvas `canvasWidth` pixels wide: expanding
/// and fading with its age, clipped to the framed recording. Callable from any thread.
void drawRippleRow(const RippleUniforms& ripple, int y, PixelSpan columns, int canvasWidth,
                   std::uint8_t* canvasRow);

}  // namespace tessaloom
