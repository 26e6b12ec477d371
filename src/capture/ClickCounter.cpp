// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ClickCounter.h"

#include <cmath>

namespace tessaloom {

bool ClickCounter::isNear(const std::optional<Point>& place) const {
    return !place || !lastPlace_ ||
           std::hypot(place->x - lastPlace_->x, place->y - lastPlace_->y) <= limits_.greatestDistancePoints;
}

int ClickCounter::press(double time, const std::optional<Point>& place) {
    const bool inARow = count_ > 0 && time - lastTime_ <= limits_.longestPauseSeconds && isNear(place);
    count_ = inARow ? count_ + 1 : 1;
    lastTime_ = time;
    lastPlace_ = place;
    return count_;
}

}  // namespace tessaloom
