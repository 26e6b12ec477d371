// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/BareSpot.h"

#include <algorithm>

#include "platform/x11/DamageRegion.h"

namespace tessaloom {
namespace {

/// As far as the usual compositing managers' shadows reach.
constexpr int shadowReach = 32;

PixelRect withShadow(const PixelRect& window) {
    return {window.x - shadowReach, window.y - shadowReach, window.width + 2 * shadowReach,
            window.height + 2 * shadowReach};
}

void appendUnlessEmpty(std::vector<PixelRect>& rects, const PixelRect& rect) {
    if (rect.width > 0 && rect.height > 0) rects.push_back(rect);
}

/// What is left of a rectangle beside another: above, below, left and right of it.
void appendRest(std::vector<PixelRect>& rest, const PixelRect& rect, const PixelRect& removed) {
    const PixelRect hole = intersection(rect, removed);
    if (hole.width <= 0 || hole.height <= 0) {
        rest.push_back(rect);
        return;
    }
    const int right = hole.x + hole.width;
    const int bottom = hole.y + hole.height;
    appendUnlessEmpty(rest, {rect.x, rect.y, rect.width, hole.y - rect.y});
    appendUnlessEmpty(rest, {rect.x, bottom, rect.width, rect.y + rect.height - bottom});
    appendUnlessEmpty(rest, {rect.x, hole.y, hole.x - rect.x, hole.height});
    appendUnlessEmpty(rest, {right, hole.y, rect.x + rect.width - right, hole.height});
}

}  // namespace

std::optional<PixelRect> bareSpotNear(const PixelRect& area, const PixelRect& screen,
                                      const std::vector<PixelRect>& windows) {
    std::vector<PixelRect> bare{screen};
    for (const PixelRect& window : windows) {
        std::vector<PixelRect> rest;
        for (const PixelRect& rect : bare)
            appendRest(rest, rect, withShadow(window));
        bare = std::move(rest);
    }
    const int centerX = area.x + area.width / 2;
    const int centerY = area.y + area.height / 2;
    const auto nearestIn = [&](const PixelRect& rect) {
        return PixelRect{std::clamp(centerX, rect.x, rect.x + rect.width - 1),
                         std::clamp(centerY, rect.y, rect.y + rect.height - 1), 1, 1};
    };
    const auto distance = [&](const PixelRect& rect) {
        const PixelRect spot = nearestIn(rect);
        return (spot.x - centerX) * (spot.x - centerX) + (spot.y - centerY) * (spot.y - centerY);
    };
    const auto nearest = std::ranges::min_element(bare, {}, distance);
    return nearest == bare.end() ? std::nullopt : std::optional(nearestIn(*nearest));
}

}  // namespace tessaloom
