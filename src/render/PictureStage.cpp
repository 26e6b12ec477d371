// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureStage.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

constexpr double fullOpacity = 256;

}  // namespace

void PictureStage::prepare(BgraView picture, const Placement& placement, int canvasWidth, int canvasHeight) {
    const Rect& rect = placement.rect;
    canvasWidth_ = canvasWidth;
    rows_ = pixelsBetween(rect.minY(), rect.maxY(), canvasHeight);
    columns_ = pixelsBetween(rect.minX(), rect.maxX(), canvasWidth);
    clip_ = placement.clip;
    opacity_ = static_cast<std::uint16_t>(std::lround(std::clamp(placement.opacity, 0.0, 1.0) * fullOpacity));
    if (columns_.empty() || opacity_ == 0) rows_ = {};
    if (rows_.empty()) return;
    reader_.prepare(picture, {rect.x, rect.width, 0, 1}, {rect.y, rect.height, 0, 1}, columns_);
}

void PictureStage::drawRow(int y, PixelSpan columns, RowScratch& scratch, std::uint8_t* canvasRow) const {
    if (!rows_.contains(y)) return;
    PixelSpan visible = intersection(columns, columns_);
    if (clip_ && !visible.empty()) visible = intersection(visible, clip_->rowSpan(y, 0, canvasWidth_));
    if (visible.empty()) return;
    reader_.readRow(y, visible, scratch, scratch.canvas.data());
    // For the cursor, whose stage divides by alpha and blends straight, this is the same colour.
    PixelKernels::blendOver(scratch.canvas.data(), opacity_,
                            canvasRow + static_cast<std::ptrdiff_t>(visible.first) * 4,
                            static_cast<std::size_t>(visible.length()));
}

}  // namespace tessaloom
