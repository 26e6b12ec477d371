// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GifCanvas.h"

#include <algorithm>
#include <cstring>

namespace tessaloom {
namespace {

/// Squared distance that a colour may lose against the palette's best and still stay: two steps a channel.
/// It keeps the noise of a video encoder from being drawn again and again.
constexpr int tolerance = 12;

/// No colour: nothing is shown here yet.
constexpr std::uint32_t unpainted = 0xFFFFFFFF;

bool sameRow(const BgraImage& a, const BgraView& b, int y) {
    return std::memcmp(a.row(y), b.row(y), static_cast<std::size_t>(b.width) * 4) == 0;
}

}  // namespace

GifCanvas::Update GifCanvas::show(const BgraView& picture, DitheredPalette& dithered) {
    const ColorPalette& palette = dithered.palette();
    const bool first = source_.empty();
    if (first) {
        const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
        shown_.assign(count, unpainted);
        pixels_.resize(count);
    }
    PixelRect area;
    int right = 0;
    for (int y = 0; y < picture.height; ++y) {
        const bool same = !first && sameRow(source_, picture, y);
        const Columns changed = same ? leaveRow(y, palette.transparent()) : quantizeRow(y, picture, dithered);
        if (changed.left >= changed.right) continue;
        if (area.height == 0) area = {.x = changed.left, .y = y, .width = 0, .height = 0};
        area.x = std::min(area.x, changed.left);
        area.height = y + 1 - area.y;
        right = std::max(right, changed.right);
    }
    copyPixels(picture, source_);
    if (area.height == 0) return showAgain(palette);
    area.width = right - area.x;
    return cutOut(area, palette.transparent());
}

GifCanvas::Update GifCanvas::showAgain(const ColorPalette& palette) {
    update_.assign(1, {palette.transparent(), palette.transparent()});
    return {.area = {.x = 0, .y = 0, .width = 1, .height = 1},
            .pixels = update_,
            .transparent = palette.transparent()};
}

/// Fills the row's pixels and tells which of them change what is shown.
GifCanvas::Columns GifCanvas::quantizeRow(int y, const BgraView& picture, DitheredPalette& dithered) {
    const ColorPalette& palette = dithered.palette();
    const std::uint8_t transparent = palette.transparent();
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width);
    Columns changed{.left = picture.width, .right = 0};
    for (int x = 0; x < picture.width; ++x) {
        const auto [index, aim] = dithered.choose(colorAt(picture, x, y), x, y);
        const std::uint32_t best = palette.colors()[index];
        const std::size_t place = start + static_cast<std::size_t>(x);
        std::uint32_t& shown = shown_[place];
        if (shown != unpainted && squaredDistance(shown, aim) <= squaredDistance(best, aim) + tolerance) {
            pixels_[place] = {transparent, shown == best ? index : transparent};
            continue;
        }
        pixels_[place] = {index, index};
        shown = best;
        changed.left = std::min(changed.left, x);
        changed.right = x + 1;
    }
    return changed;
}

GifCanvas::Columns GifCanvas::leaveRow(int y, std::uint8_t transparent) {
    const auto row = pixels_.begin() + std::ptrdiff_t{y} * source_.width();
    std::fill_n(row, source_.width(), IndexedPixel{transparent, transparent});
    return {};
}

GifCanvas::Update GifCanvas::cutOut(PixelRect area, std::uint8_t transparent) {
    update_.clear();
    for (int y = area.y; y < area.y + area.height; ++y) {
        const auto row = pixels_.begin() + std::ptrdiff_t{y} * source_.width() + area.x;
        update_.insert(update_.end(), row, row + area.width);
    }
    return {.area = area, .pixels = update_, .transparent = transparent};
}

}  // namespace tessaloom
