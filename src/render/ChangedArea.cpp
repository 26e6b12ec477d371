// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ChangedArea.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

PixelSpan evenAround(PixelSpan span, int limit) {
    return {span.first / 2 * 2, std::min((span.last + 1) / 2 * 2, limit)};
}

PixelSpan hull(PixelSpan a, PixelSpan b) {
    if (a.empty()) return b;
    return {std::min(a.first, b.first), std::max(a.last, b.last)};
}

}  // namespace

void ChangedArea::clear(int width, int height) {
    width_ = width;
    height_ = height;
    bands_.assign(static_cast<std::size_t>((height + bandHeight - 1) / bandHeight), {});
}

void ChangedArea::add(const Rect& rect) {
    const PixelSpan rows = pixelsBetween(std::floor(rect.minY()), std::ceil(rect.maxY()), height_);
    const PixelSpan columns = pixelsBetween(std::floor(rect.minX()), std::ceil(rect.maxX()), width_);
    if (rows.empty() || columns.empty()) return;
    for (int band = rows.first / bandHeight; band <= (rows.last - 1) / bandHeight; ++band) {
        PixelSpan& marked = bands_[static_cast<std::size_t>(band)];
        marked = hull(marked, evenAround(columns, width_));
    }
}

void ChangedArea::addAll() {
    std::ranges::fill(bands_, PixelSpan{0, width_});
}

bool ChangedArea::empty() const {
    return std::ranges::all_of(bands_, &PixelSpan::empty);
}

}  // namespace tessaloom
