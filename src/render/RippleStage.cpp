// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RippleStage.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "render/RoundedBox.h"

namespace tessaloom {
namespace {

/// Of the quad's half width.
constexpr double ringThickness = 0.16;

// The ring's alpha at distance `d` from the middle, 1 being the quad's edge.
double ringAlpha(const RippleUniforms& ripple, double d) {
    const double age = ripple.params.x;
    const double ring = hermiteStep(age - ringThickness, age, d) - hermiteStep(age, age + ringThickness, d);
    return ring * (1 - age) * ripple.color.w;
}

void blend(const std::array<double, 3>& color, double alpha, std::uint8_t* pixel) {
    for (std::size_t channel = 0; channel < color.size(); ++channel) {
        const double mixed = color[channel] * 255 * alpha + pixel[channel] * (1 - alpha);
        pixel[channel] = static_cast<std::uint8_t>(std::lround(std::clamp(mixed, 0.0, 255.0)));
    }
}

}  // namespace

void drawRippleRow(const RippleUniforms& ripple, int y, PixelSpan columns, int canvasWidth,
                   std::uint8_t* canvasRow) {
    const Rect quad = toRect(ripple.rect);
    if (y + 0.5 < quad.minY() || y + 0.5 >= quad.maxY()) return;
    PixelSpan drawn = intersection(columns, pixelsBetween(quad.minX(), quad.maxX(), canvasWidth));
    if (drawn.empty()) return;
    const RoundedBox clip{toRect(ripple.content), ripple.meta.z};
    drawn = intersection(drawn, clip.rowSpan(y, 0, canvasWidth));
    const std::array<double, 3> color{ripple.color.z, ripple.color.y, ripple.color.x};
    const double dy = ((y + 0.5 - quad.y) / quad.height - 0.5) * 2;
    for (int x = drawn.first; x < drawn.last; ++x) {
        const double dx = ((x + 0.5 - quad.x) / quad.width - 0.5) * 2;
        const double d = std::sqrt(dx * dx + dy * dy);
        if (std::abs(d - ripple.params.x) >= ringThickness) continue;
        blend(color, ringAlpha(ripple, d), canvasRow + static_cast<std::ptrdiff_t>(x) * 4);
    }
}

}  // namespace tessaloom
