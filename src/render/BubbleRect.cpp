// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/BubbleRect.h"

#include <algorithm>
#include <array>

namespace tessaloom {
namespace {

float heightFactor(WebcamConfig::Shape shape) {
    constexpr std::array<float, 3> factors{1.0F, 0.62F, 0.66F};
    return factors[static_cast<std::size_t>(shape)];
}

// The upper bound wins over the lower one when the bubble is too large for the canvas.
float keptInside(float origin, float side, float canvasSide, float margin) {
    const float highest = std::max(margin, canvasSide - side - margin);
    return std::min(std::max(origin, margin), highest);
}

}  // namespace

float bubbleBase(const WebcamConfig& config, float canvasWidth) {
    return std::clamp(static_cast<float>(config.relativeSize), 0.05F, 0.6F) * canvasWidth;
}

Rect bubbleRect(const WebcamConfig& config, float canvasWidth, float canvasHeight, float pop) {
    const float base = bubbleBase(config, canvasWidth);
    const float width = base * pop;
    const float height = base * heightFactor(config.shape) * pop;
    const float margin = 0.03F * canvasWidth;
    const float wantedX = static_cast<float>(config.position.x) * canvasWidth - width / 2;
    const float wantedY = static_cast<float>(config.position.y) * canvasHeight - height / 2;
    return {keptInside(wantedX, width, canvasWidth, margin),
            keptInside(wantedY, height, canvasHeight, margin), width, height};
}

}  // namespace tessaloom
