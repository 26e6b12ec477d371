// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/FrameGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

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
    EXPECT_NEAR(pointAfter(2.4, Change::cameJustNow), 2, 1e-6);
    EXPECT_NEAR(pointAfter(2.6, Change::cameJustNow), 3, 1e-6);
    EXPECT_NEAR(pointAfter(77.4, Change::cameJustNow), 77, 1e-6);
    EXPECT_NEAR(pointAfter(77.6, Change::cameJustNow), 78, 1e-6);
}

TEST(FrameGrid, ALateOneOfSteadyChangesBelongsToItsPoint) {
    EXPECT_NEAR(pointAfter(1.1, Change::cameJustNow), 1, 1e-6);
    EXPECT_NEAR(pointAfter(1.9, Change::cameJustNow), 1, 1e-6);
}

TEST(FrameGrid, AChangeThatWasHeldUpBelongsToThePointThatHasPassed) {
    EXPECT_NEAR(pointAfter(1.01, Change::hasWaited), 1, 1e-6);
    EXPECT_NEAR(pointAfter(1.9, Change::hasWaited), 1, 1e-6);
    EXPECT_NEAR(pointAfter(3.9, Change::hasWaited), 3, 1e-6);
}

struct ScreenChange {
    double time = 0;
    bool isSteady = true;  ///< one of those that come again and again
};

struct Recorded {
    std::vector<double> points;
    int missed = 0;  ///< steady changes that another one followed before they were read
};

/// What comes of a screen that changes so, the first change of which begins the grid; it is read as soon as
/// it may be.
Recorded record(const std::vector<ScreenChange>& changes) {
    FrameGrid grid(interval);
    Recorded recorded;
    double now = begin;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const double point = grid.pointOf(Change::cameJustNow, changes[i].time);
        now = std::max(point, changes[i].time);
        int steady = changes[i].isSteady ? 1 : 0;
        for (; i + 1 < changes.size() && changes[i + 1].time <= now; ++i)
            steady += changes[i + 1].isSteady ? 1 : 0;
        recorded.missed += std::max(steady - 1, 0);
        grid.taken(point);
        recorded.points.push_back(point);
    }
    return recorded;
}

/// One that begins the grid, then some that come at `rate`, the first of them after `phase` intervals, each
/// up to `jitter` intervals early or late.
std::vector<ScreenChange> changesAt(double rate, double phase, double jitter, int count) {
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> off(-jitter, jitter);
    std::vector<ScreenChange> changes{{begin}};
    for (int i = 0; i < count; ++i)
        changes.push_back({begin + (phase + off(generator)) * interval + i / rate});
    return changes;
}

/// The same, and once a second something else changes, too.
std::vector<ScreenChange> disturbed(std::vector<ScreenChange> changes) {
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> second(0, 1);
    for (double from = begin; from + 1 < changes.back().time; ++from)
        changes.push_back({.time = from + second(generator), .isSteady = false});
    std::ranges::sort(changes, {}, &ScreenChange::time);
    return changes;
}

TEST(FrameGrid, MovesSoThatSteadyChangesHaveAFrameEach) {
    for (double phase = 0.3; phase < 1.3; phase += 0.05)
        EXPECT_LE(record(disturbed(changesAt(60, phase, 0.2, 3600))).missed, 2)
            << "those until it has moved, of 3600; phase " << phase;
}

TEST(FrameGrid, FollowsAScreenThatIsNotQuiteAsQuick) {
    const Recorded recorded = record(disturbed(changesAt(59.94, 1.2, 0.1, 6000)));
    EXPECT_LE(recorded.missed, 2);
    for (std::size_t i = 1; i < recorded.points.size(); ++i)
        EXPECT_NEAR((recorded.points[i] - recorded.points[i - 1]) / interval, 1, 0.02) << i;
}

TEST(FrameGrid, TakesNoMoreFramesThanItMayOfAQuickerScreen) {
    for (const double rate : {60.5, 75.0, 144.0, 1000.0}) {
        const auto frames = record(changesAt(rate, 0.5, 0.05, static_cast<int>(100 * rate))).points.size();
        EXPECT_LE(frames, 60 * 100 + 2U) << rate;
        EXPECT_GE(frames, 59 * 100U) << rate;
    }
}

TEST(FrameGrid, StaysWhereChangesComeMidway) {
    const auto points = record(changesAt(60, 0.6, 0, 100)).points;
    EXPECT_NEAR(points.back() - points.front(), 100 * interval, 1e-6);
}

}  // namespace
}  // namespace tessaloom
