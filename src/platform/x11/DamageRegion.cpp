// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/DamageRegion.h"

#include <algorithm>
#include <cstdint>

namespace tessaloom {
namespace {

/// Each rectangle is a request of its own, about as dear as reading this many pixels more.
constexpr std::int64_t requestCostInPixels = 20'000;

std::int64_t area(const PixelRect& rect) {
    return std::int64_t{rect.width} * rect.height;
}

PixelRect grownToEven(const PixelRect& rect) {
    const int left = rect.x & ~1;
    const int top = rect.y & ~1;
    const int right = (rect.x + rect.width + 1) & ~1;
    const int bottom = (rect.y + rect.height + 1) & ~1;
    return {left, top, right - left, bottom - top};
}

PixelRect joined(const PixelRect& a, const PixelRect& b) {
    const int left = std::min(a.x, b.x);
    const int top = std::min(a.y, b.y);
    const int right = std::max(a.x + a.width, b.x + b.width);
    const int bottom = std::max(a.y + a.height, b.y + b.height);
    return {left, top, right - left, bottom - top};
}

/// Neighbours in the list are neighbours on the screen: a region's rectangles come row by row.
void appendOrJoin(std::vector<PixelRect>& rects, const PixelRect& rect) {
    if (!rects.empty()) {
        const PixelRect both = joined(rects.back(), rect);
        if (area(both) <= area(rects.back()) + area(rect) + requestCostInPixels) {
            rects.back() = both;
            return;
        }
    }
    rects.push_back(rect);
}

}  // namespace

PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    const int left = std::max(a.x, b.x);
    const int top = std::max(a.y, b.y);
    return {left, top, std::max(0, std::min(a.x + a.width, b.x + b.width) - left),
            std::max(0, std::min(a.y + a.height, b.y + b.height) - top)};
}

std::vector<PixelRect> rectanglesToRead(const std::vector<PixelRect>& damaged, int pictureWidth,
                                        int pictureHeight) {
    const PixelRect picture{0, 0, pictureWidth, pictureHeight};
    std::vector<PixelRect> rects;
    std::int64_t total = 0;
    for (const PixelRect& rect : damaged) {
        const PixelRect part = intersection(rect, picture);
        if (area(part) > 0) appendOrJoin(rects, intersection(grownToEven(part), picture));
    }
    for (const PixelRect& rect : rects)
        total += area(rect) + requestCostInPixels;
    if (rects.size() > 1 && total >= area(picture)) return {picture};
    return rects;
}

}  // namespace tessaloom
