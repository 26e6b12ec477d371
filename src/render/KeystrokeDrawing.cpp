// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/KeystrokeDrawing.h"

#include "render/KeystrokePlacement.h"

namespace tessaloom {

ChipUniforms keystrokeDrawing(const KeystrokeChip& chip, Size rasterPixels, float canvasWidth,
                              float canvasHeight) {
    return {toFloat4(keystrokePlacement(rasterPixels, canvasWidth, canvasHeight)),
            {canvasWidth, canvasHeight, chip.alpha, 0}};
}

}  // namespace tessaloom
