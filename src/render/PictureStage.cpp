// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureStage.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

constexpr std::uint32_t fullOpacity = 256;

// Source over: target = source * opacity + target * (1 - source alpha * opacity). For the cursor, whose stage
// divides by alpha and blends straight, this is the same colour. The canvas stays opaque.
void blendOver(const std::uint8_t* source, std::uint32_t opacity, std::uint8_t* target, int pixels) {
    constexpr std::uint32_t one = 255 * fullOpacity;
    for (int i = 0; i < pixels; ++i, source += 4, target += 4) {
        const std::uint32_t alpha = source[3] * opacity;
        if (alpha == 0) continue;
        for (int channel = 0; channel < 4; ++channel) {
            const std::uint32_t sum = source[channel] * opacity * 255 + target[channel] * (one - alpha);
            target[channel] = static_cast<std::uint8_t>(std::min((sum + one / 2) / one, 255U));
        }
    }
}

}  // namespace

void PictureStage::prepare(BgraView picture, const Placement& placement, int canvasWidth, int canvasHeight) {
    const Rect& rect = placement.rect;
    canvasWidth_ = canvasWidth;
    rows_ = pixelsBetween(rect.minY(), rect.maxY(), canvasHeight);
    columns_ = pixelsBetween(rect.minX(), rect.maxX(), canvasWidth);
    clip_ = placement.clip;
    opacity_ = static_cast<std::uint32_t>(std::lround(std::clamp(placement.opacity, 0.0, 1.0) * fullOpacity));
    if (columns_.empty() || opacity_ == 0) rows_ = {};
    if (rows_.empty()) return;
    reader_.prepare(picture, {rect.x, rect.width, 0, 1}, {rect.y, rect.height, 0, 1}, columns_);
}

void PictureStage::drawRow(int y, RowScratch& scratch, std::uint8_t* canvasRow) const {
    if (!rows_.contains(y)) return;
    const PixelSpan visible = clip_ ? intersection(columns_, clip_->rowSpan(y, 0, canvasWidth_)) : columns_;
    if (visible.empty()) return;
    reader_.readRow(y, visible, scratch, scratch.canvas.data());
    blendOver(scratch.canvas.data(), opacity_, canvasRow + static_cast<std::ptrdiff_t>(visible.first) * 4,
              visible.length());
}

}  // namespace tessaloom
