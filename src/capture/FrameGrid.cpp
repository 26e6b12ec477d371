// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/FrameGrid.h"

#include <algorithm>
#include <cmath>

namespace tessaloom {
namespace {

// In intervals. Where changes wait this long for their points, the next one can come a little too early or
// too late, or another one come between two, and each still has a frame of its own.
constexpr double shortestWait = 0.2;
constexpr double longestWait = 0.6;
constexpr double step = 0.01;

}  // namespace

double FrameGrid::pointOf(Change change, double now) {
    if (!next_) return now;
    if (change == Change::cameJustNow && !cameAt_) cameAt_ = now;
    const double late = (now - *next_) / interval_;
    const bool followsAtOnce = late < 1;
    const double steps =
        change == Change::hasWaited || followsAtOnce ? std::floor(late) : std::ceil(late - 0.5);
    return *next_ + std::max(steps, 0.0) * interval_;
}

void FrameGrid::taken(double point) {
    if (first_)
        ++laterFrames_;
    else
        first_ = point;
    next_ = point + interval_ + shiftAfter(point);
    cameAt_.reset();
}

/// By how much the next points move. Backwards only as far as there were points without a frame, so that
/// changes which come more often than frames may never get more of them.
double FrameGrid::shiftAfter(double point) const {
    if (!cameAt_) return 0;
    const double wait = (point - *cameAt_) / interval_;
    if (wait < shortestWait) return step * interval_;
    const double unused = point - *first_ - laterFrames_ * interval_;
    return wait > longestWait && unused > step * interval_ ? -step * interval_ : 0;
}

}  // namespace tessaloom
