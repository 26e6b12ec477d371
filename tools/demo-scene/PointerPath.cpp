// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/PointerPath.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaloom::demo {
namespace {

constexpr double stepSeconds = 0.005;
constexpr double stepJitterSeconds = 0.0004;

double between(double low, double high, std::mt19937& random) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

// Minimum jerk: 0 to 1 with no speed and no acceleration at either end.
double progress(double share) {
    const double t = std::clamp(share, 0.0, 1.0);
    return t * t * t * (10 + t * (-15 + t * 6));
}

double durationFor(double distance, double targetSize) {
    return 0.22 + 0.15 * std::log2(distance / std::max(targetSize, 8.0) + 1);
}

}  // namespace

std::vector<PathPoint> handPath(QPointF from, QPointF to, double targetSize, std::mt19937& random) {
    const QPointF way = to - from;
    const double distance = std::hypot(way.x(), way.y());
    if (distance < 1) return {{0, to}};

    const double duration = durationFor(distance, targetSize) * between(0.92, 1.08, random);
    const double overshoot = distance > 250 ? std::min(10.0, distance * between(0.008, 0.02, random)) : 0;
    const double bend = distance * between(0.02, 0.06, random) * (between(-1, 1, random) < 0 ? -1 : 1);
    const QPointF along = way / distance;
    const QPointF across(-along.y(), along.x());
    // The correction sets in while the main movement ends.
    const double mainDuration = overshoot > 0 ? duration * 0.85 : duration;
    const double correctionStart = mainDuration * 0.9;

    std::vector<PathPoint> path;
    const int steps = static_cast<int>(std::lround(duration / stepSeconds));
    for (int step = 1; step < steps; ++step) {
        const double now = duration * step / steps;
        const double main = progress(now / mainDuration);
        const double correction = progress((now - correctionStart) / (duration - correctionStart));
        const double forward = (distance + overshoot) * main - (overshoot > 0 ? overshoot * correction : 0);
        const double sideways = bend * std::sin(std::numbers::pi * main) * (1 - main / 2);
        path.push_back({now + between(-stepJitterSeconds, stepJitterSeconds, random),
                        from + along * forward + across * sideways});
    }
    path.push_back({duration, to});
    return path;
}

}  // namespace tessaloom::demo
