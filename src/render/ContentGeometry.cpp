// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ContentGeometry.h"

#include <algorithm>

namespace tessaloom {

ContentGeometry contentGeometry(float canvasWidth, float canvasHeight, float aspect, float paddingFraction,
                                float cornerFraction) {
    const float margin = 2 * canvasWidth * paddingFraction;
    const float freeWidth = std::max(canvasWidth - margin, 0.0F);
    const float freeHeight = std::max(canvasHeight - margin, 0.0F);
    const float shape = aspect > 0 ? aspect : 1.7777778F;
    const float freeShape = freeHeight > 0 ? freeWidth / freeHeight : 1.0F;
    const bool isHeightLimited = freeShape > shape;
    const float width = isHeightLimited ? shape * freeHeight : freeWidth;
    const float height = isHeightLimited ? freeHeight : freeWidth / shape;
    return {{(canvasWidth - width) * 0.5F, (canvasHeight - height) * 0.5F, width, height},
            std::min(std::min(width, height) * 0.5F, canvasWidth * cornerFraction)};
}

}  // namespace tessaloom
