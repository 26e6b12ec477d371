// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/KeystrokePlacement.h"

#include <algorithm>

namespace tessaloom {

Rect keystrokePlacement(Size textureSize, float canvasWidth, float canvasHeight) {
    const float height = 0.08F * canvasHeight;
    const float width = height * static_cast<float>(textureSize.width) /
                        static_cast<float>(std::max(textureSize.height, 1.0));
    return {(canvasWidth - width) * 0.5F, canvasHeight - height - 0.06F * canvasHeight, width, height};
}

}  // namespace tessaloom
