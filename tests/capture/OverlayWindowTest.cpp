// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/OverlayWindow.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaloom {
namespace {

TEST(RoundedRegion, LeavesOutTheCornersOnly) {
    const QRegion region = roundedRegion({10, 20, 100, 60}, 30);
    EXPECT_EQ(region.boundingRect(), QRect(10, 20, 100, 60));
    EXPECT_FALSE(region.contains(QPoint(12, 22)));
    EXPECT_FALSE(region.contains(QPoint(107, 77)));
    for (const QPoint& inside : {QPoint(10, 50), QPoint(60, 20), QPoint(109, 50), QPoint(60, 79)})
        EXPECT_TRUE(region.contains(inside)) << inside.x() << ' ' << inside.y();
}

TEST(RoundedRegion, OfHalfItsWidthIsACircle) {
    const QRegion region = roundedRegion({0, 0, 200, 200}, 100);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x) {
            const double distance = std::hypot(x + 0.5 - 100, y + 0.5 - 100);
            if (std::abs(distance - 100) < 1.5) continue;
            ASSERT_EQ(region.contains(QPoint(x, y)), distance < 100) << x << ' ' << y;
        }
    }
}

}  // namespace
}  // namespace tessaloom
