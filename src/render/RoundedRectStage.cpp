// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/RoundedRectStage.h"

#include <algorithm>
#include <cmath>

#include "render/PixelKernels.h"

namespace tessaloom {
namespace {

std::uint8_t toByte(float value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255));
}

std::int16_t toWeight(double opacity) {
    return static_cast<std::int16_t>(std::lround(opacity * PixelKernels::largestWeight));
}

}  // namespace

void RoundedRectStage::prepare(const RoundedRectUniforms& uniforms, int canvasWidth, int canvasHeight) {
    const Rect rect = toRect(uniforms.rect);
    canvasWidth_ = canvasWidth;
    rows_ = pixelsBetween(rect.minY(), rect.maxY(), canvasHeight);
    columns_ = pixelsBetween(rect.minX(), rect.maxX(), canvasWidth);
    const double corner = std::min<double>(uniforms.meta.z, std::min(rect.width, rect.height) * 0.5);
    outline_ = {rect, corner};
    color_ = {toByte(uniforms.color.z), toByte(uniforms.color.y), toByte(uniforms.color.x), 255};
    opacity_ = std::clamp(static_cast<double>(uniforms.color.w) * uniforms.meta.w, 0.0, 1.0);
    if (columns_.empty() || opacity_ == 0) clear();
}

void RoundedRectStage::drawRow(int y, PixelSpan columns, std::uint8_t* canvasRow) const {
    if (!rows_.contains(y)) return;
    const PixelSpan drawn = intersection(columns, columns_);
    if (drawn.empty()) return;
    const PixelSpan touched = intersection(drawn, outline_.rowSpan(y, 1, canvasWidth_));
    if (touched.empty()) return;
    PixelSpan full = intersection(drawn, outline_.rowSpan(y, -1, canvasWidth_));
    if (full.empty()) full = {touched.last, touched.last};
    drawEdge(y, {touched.first, full.first}, canvasRow);
    PixelKernels::mixColor(color_.data(), toWeight(opacity_),
                           canvasRow + static_cast<std::ptrdiff_t>(full.first) * 4,
                           static_cast<std::size_t>(full.length()));
    drawEdge(y, {full.last, touched.last}, canvasRow);
}

// Between the corners of its upper and lower edge the distance is the same all along a row.
void RoundedRectStage::drawEdge(int y, PixelSpan span, std::uint8_t* canvasRow) const {
    const Rect& rect = outline_.rect;
    const bool isBeyondCorners = std::abs(y + 0.5 - rect.midY()) >= rect.height * 0.5 - outline_.corner;
    PixelSpan straight;
    if (isBeyondCorners) {
        straight = intersection(
            span, pixelsBetween(rect.minX() + outline_.corner, rect.maxX() - outline_.corner, canvasWidth_));
    }
    for (int x = span.first; x < span.last;) {
        const int pixels = x == straight.first && !straight.empty() ? straight.length() : 1;
        const double fill = hermiteStep(1, -1, outline_.distance(x + 0.5, y + 0.5));
        PixelKernels::mixColor(color_.data(), toWeight(opacity_ * fill),
                               canvasRow + static_cast<std::ptrdiff_t>(x) * 4,
                               static_cast<std::size_t>(pixels));
        x += pixels;
    }
}

}  // namespace tessaloom
