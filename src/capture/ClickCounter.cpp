// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ClickCounter.h"

#include <cmath>

namespace tessaloom {
namespace {

// The usual defaults of Linux toolkits (Qt and GTK both use 400 ms and 5 pixels).
constexpr double longestPauseSeconds = 0.4;
constexpr double greatestDistancePoints = 5.0;

bool isNear(const std::optional<Point>& a, const std::optional<Point>& b) {
    return !a || !b || std::hypot(a->x - b->x, a->y - b->y) <= greatestDistancePoints;
}

}  // namespace

int ClickCounter::press(double time, const std::optional<Point>& place) {
    const bool inARow = count_ > 0 && time - lastTime_ <= longestPauseSeconds && isNear(place, lastPlace_);
    count_ = inARow ? count_ + 1 : 1;
    lastTime_ = time;
    lastPlace_ = place;
    return count_;
}

}  // namespace tessaloom
