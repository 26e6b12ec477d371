// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/QualityPreset.h"

#include <algorithm>

namespace tessaloom {

double bitsPerPixel(QualityPreset preset) {
    constexpr std::array<double, 3> values{0.1, 0.07, 0.045};
    return values[static_cast<std::size_t>(preset)];
}

std::int64_t movieBitRate(CanvasSize canvas, double bitsPerPixel) {
    constexpr double framesPerSecond = 60;
    constexpr std::int64_t lowest = 500'000;
    const double pixels = static_cast<double>(canvas.width) * canvas.height;
    return std::max(static_cast<std::int64_t>(pixels * framesPerSecond * bitsPerPixel), lowest);
}

}  // namespace tessaloom
