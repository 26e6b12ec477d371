// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RelativeLocation.h"

#include <algorithm>

namespace tessaloom {

std::optional<RelativePoint> relativeLocation(const Point& point, const Rect& capturedArea) {
    if (!(capturedArea.width > 0) || !(capturedArea.height > 0)) return std::nullopt;
    return RelativePoint{std::clamp((point.x - capturedArea.x) / capturedArea.width, 0.0, 1.0),
                         std::clamp((point.y - capturedArea.y) / capturedArea.height, 0.0, 1.0)};
}

}  // namespace tessaloom
