// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/DropShadow.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

/// How far the shadow fades, as a fraction of the smaller content side, and at least, in pixels.
constexpr double featherFraction = 0.06;
constexpr double leastFeather = 8;
/// How far it hangs down, as a fraction of the content's height.
constexpr double dropFraction = 0.02;
/// How much it darkens at full strength.
constexpr double darkest = 0.55;
constexpr double leastStrength = 0.001;
constexpr int fullLight = 32768;

const std::uint16_t* shade(PixelSpan span, const std::uint16_t* light, std::uint8_t* row) {
    for (int x = span.first; x < span.last; ++x, ++light) {
        for (int i = 4 * x; i < 4 * x + 3; ++i) {
            row[i] = static_cast<std::uint8_t>((row[i] * *light + fullLight / 2) / fullLight);
        }
    }
    return light;
}

}  // namespace

void DropShadow::prepare(const ContentMask& mask, double strength, int canvasWidth, int canvasHeight) {
    const auto height = static_cast<std::size_t>(canvasHeight);
    if (mask.outline() == outline_ && strength == strength_ && canvasWidth == canvasWidth_ &&
        height == rows_.size()) {
        return;
    }
    outline_ = mask.outline();
    strength_ = strength;
    canvasWidth_ = canvasWidth;
    rows_.clear();
    light_.clear();
    RoundedBox caster = outline_;
    caster.rect.y += caster.rect.height * dropFraction;
    const double smallerSide = std::min(caster.rect.width, caster.rect.height);
    const double feather = std::max(leastFeather, smallerSide * featherFraction);
    for (int y = 0; y < canvasHeight; ++y)
        addRow(y, caster, feather, mask.row(y).covered);
}

void DropShadow::addRow(int y, const RoundedBox& caster, double feather, PixelSpan covered) {
    PixelSpan shaded;
    if (strength_ > leastStrength) shaded = caster.rowSpan(y, feather, canvasWidth_);
    const Row row{intersection(shaded, {0, covered.first}),
                  intersection(shaded, {covered.last, canvasWidth_}), light_.size()};
    for (const PixelSpan span : {row.left, row.right}) {
        for (int x = span.first; x < span.last; ++x) {
            const double mask = 1 - hermiteStep(0, feather, caster.distance(x + 0.5, y + 0.5));
            const double light = 1 - strength_ * darkest * mask;
            light_.push_back(
                static_cast<std::uint16_t>(std::lround(std::clamp(light, 0.0, 1.0) * fullLight)));
        }
    }
    rows_.push_back(row);
}

void DropShadow::shadeRow(int y, std::uint8_t* canvasRow) const {
    const Row& row = rows_[static_cast<std::size_t>(y)];
    shade(row.right, shade(row.left, light_.data() + row.start, canvasRow), canvasRow);
}

}  // namespace tessaloom
