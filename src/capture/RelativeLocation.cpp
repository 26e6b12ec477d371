// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RelativeLocation.h"

#include <algorithm>

namespace tessaloom {

namespace {

constexpr double hair = 1e-9;

double heldInside(double fraction) {
    return std::clamp(fraction, hair, 1 - hair);
}

}  // namespace

std::optional<RelativePoint> relativeLocation(const Point& point, const Rect& capturedArea) {
    if (!(capturedArea.width > 0) || !(capturedArea.height > 0)) return std::nullopt;
    return RelativePoint{(point.x - capturedArea.x) / capturedArea.width,
                         (point.y - capturedArea.y) / capturedArea.height};
}

std::vector<CursorSample> heldInside(std::vector<CursorSample> samples) {
    for (CursorSample& sample : samples) {
        sample.x = heldInside(sample.x);
        sample.y = heldInside(sample.y);
    }
    return samples;
}

}  // namespace tessaloom
