// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/FrameGrid.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using Change = FrameGrid::Change;

constexpr double interval = 1.0 / 60;
constexpr double begin = 5000;

/// A grid with a frame at `begin`.
FrameGrid begunGrid() {
    FrameGrid grid(interval);
    grid.taken(begin);
    return grid;
}

/// The point of a change so many intervals after the first frame, counted in intervals as well.
double pointAfter(double intervals, Change change) {
    return (begunGrid().pointOf(change, begin + intervals * interval) - begin) / interval;
}

TEST(FrameGrid, BeginsWithTheFirstFrame) {
    EXPECT_EQ(FrameGrid(interval).pointOf(Change::cameJustNow, begin), begin);
    EXPECT_EQ(FrameGrid(interval).pointOf(Change::hasWaited, begin), begin);
}

TEST(FrameGrid, APointHasOneFrame) {
    for (const auto change : {Change::cameJustNow, Change::hasWaited})
        EXPECT_NEAR(pointAfter(0.2, change), 1, 1e-6);
}

TEST(FrameGrid, AChangeAfterARestBelongsToTheNearestPoint) {
    EXPECT_NEAR(pointAfter(1.4, Change::cameJustNow), 1, 1e-6);
    EXPECT_NEAR(pointAfter(1.6, Change::cameJustNow), 2, 1e-6);
    EXPECT_NEAR(pointAfter(77.4, Change::cameJustNow), 77, 1e-6);
    EXPECT_NEAR(pointAfter(77.6, Change::cameJustNow), 78, 1e-6);
}

TEST(FrameGrid, AChangeThatWasHeldUpBelongsToThePointThatHasPassed) {
    EXPECT_NEAR(pointAfter(1.01, Change::hasWaited), 1, 1e-6);
    EXPECT_NEAR(pointAfter(1.9, Change::hasWaited), 1, 1e-6);
    EXPECT_NEAR(pointAfter(3.9, Change::hasWaited), 3, 1e-6);
}

}  // namespace
}  // namespace tessaloom
