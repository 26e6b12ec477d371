// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/FrameGrid.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {

double FrameGrid::pointOf(Change change, double now) {
    if (!next_) return now;
    const double late = (now - *next_) / interval_;
    const double steps = change == Change::cameJustNow ? std::ceil(late - 0.5) : std::floor(late);
    return *next_ + std::max(steps, 0.0) * interval_;
}

}  // namespace tessaloom
