// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <random>
#include <vector>

namespace tessaloom::demo {

/// Where a pointer is some seconds after it set off.
struct PathPoint {
    double seconds = 0;
    QPointF position;
};

/// A hand's way from one point to another, sampled about 200 times a second and ending exactly at `to`. It
/// takes longer the farther and the smaller the target is (Fitts's law), speeds up and slows down with the
/// least jerk (Flash and Hogan 1985), bends a little and on long ways overshoots and corrects itself.
/// `targetSize` is the target's smaller side in pixels.
std::vector<PathPoint> handPath(QPointF from, QPointF to, double targetSize, std::mt19937& random);

}  // namespace tessaloom::demo
