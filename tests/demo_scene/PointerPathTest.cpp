// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/PointerPath.h"

#include <gtest/gtest.h>

#include <QLineF>
#include <algorithm>
#include <cmath>

namespace tessaloom::demo {
namespace {

constexpr double targetSize = 40;
const QPointF start(100, 100);
const QPointF target(1100, 500);

std::vector<PathPoint> pathTo(QPointF to, double size = targetSize, unsigned seed = 1) {
    std::mt19937 random(seed);
    return handPath(start, to, size, random);
}

TEST(PointerPath, EndsExactlyOnTheTarget) {
    for (const QPointF to : {target, start, QPointF(101, 100), QPointF(0, 0)}) {
        EXPECT_EQ(pathTo(to).back().position, to);
    }
}

TEST(PointerPath, IsSampledBetween120And250TimesASecond) {
    const auto path = pathTo(target);
    for (std::size_t index = 1; index < path.size(); ++index) {
        const double gap = path[index].seconds - path[index - 1].seconds;
        EXPECT_GT(gap, 1.0 / 250);
        EXPECT_LT(gap, 1.0 / 120);
    }
}

TEST(PointerPath, FarAndSmallTargetsTakeLonger) {
    const auto duration = [](QPointF to, double size) { return pathTo(to, size).back().seconds; };
    EXPECT_GT(duration(target, targetSize), 1.3 * duration({200, 140}, targetSize));
    EXPECT_GT(duration(target, 16), 1.1 * duration(target, 100));
}

TEST(PointerPath, SetsOffAndArrivesSlowly) {
    const auto path = pathTo(target);
    const auto stepAt = [&](double share) {
        const auto index = static_cast<std::size_t>(share * static_cast<double>(path.size() - 2));
        return QLineF(path[index].position, path[index + 1].position).length();
    };
    EXPECT_LT(stepAt(0), 1);
    EXPECT_LT(stepAt(1), 2);
    EXPECT_GT(stepAt(0.4), 8);
}

TEST(PointerPath, BendsAndOvershootsALittleAndNeverTheSameWayTwice) {
    const QLineF straight(start, target);
    double farthest = 0;
    for (unsigned seed = 1; seed <= 20; ++seed) {
        double bend = 0;
        for (const PathPoint& point : pathTo(target, targetSize, seed)) {
            const QPointF way = point.position - start;
            const QPointF along(straight.dx() / straight.length(), straight.dy() / straight.length());
            bend = std::max(bend, std::abs(way.x() * along.y() - way.y() * along.x()));
            farthest = std::max(farthest, way.x() * along.x() + way.y() * along.y());
        }
        EXPECT_GT(bend, 5) << seed;
        EXPECT_LT(bend, 0.08 * straight.length()) << seed;
    }
    EXPECT_GT(farthest, straight.length() + 2);
    EXPECT_LT(farthest, straight.length() + 12);
    EXPECT_NE(pathTo(target, targetSize, 1)[40].position, pathTo(target, targetSize, 2)[40].position);
}

}  // namespace
}  // namespace tessaloom::demo
