// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/FrameGrid.h"

#include <gtest/gtest.h>

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

struct Recorded {
    std::vector<double> points;
    int missed = 0;  ///< changes that another one followed before they were read
};

/// What comes of a screen that changes at those times, the first of which begins the grid, for a reader who
/// is held up for about an interval every two seconds.
Recorded record(const std::vector<double>& changes) {
    FrameGrid grid(interval);
    std::mt19937 generator(11);
    std::uniform_real_distribution<double> holdUp(0.9 * interval, 1.1 * interval);
    Recorded recorded;
    double now = begin;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const Change change = changes[i] > now ? Change::cameJustNow : Change::hasWaited;
        now = std::max(now, changes[i]);
        double point = grid.pointOf(change, now);
        if (point > now) {
            now = point + (recorded.points.size() % 120 == 99 ? holdUp(generator) : 0);
            point = grid.pointOf(Change::hasWaited, now);
        }
        for (; i + 1 < changes.size() && changes[i + 1] <= now; ++i)
            ++recorded.missed;
        grid.taken(point);
        recorded.points.push_back(point);
    }
    return recorded;
}

/// One that begins the grid, then some that come at `rate`, the first of them after `phase` intervals, each
/// up to `jitter` intervals early or late.
std::vector<double> changesAt(double rate, double phase, double jitter, int count) {
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> off(-jitter, jitter);
    std::vector<double> changes{begin};
    for (int i = 0; i < count; ++i)
        changes.push_back(begin + (phase + off(generator)) * interval + i / rate);
    return changes;
}

TEST(FrameGrid, MovesSoThatSteadyChangesHaveAFrameEach) {
    constexpr int holdUps = 3600 / 120;
    for (double phase = 0.3; phase < 1.3; phase += 0.05)
        EXPECT_LE(record(changesAt(60, phase, 0.35, 3600)).missed, holdUps / 2) << "phase " << phase;
}

TEST(FrameGrid, FollowsAScreenThatIsNotQuiteAsQuick) {
    const Recorded recorded = record(changesAt(59.94, 1.2, 0.1, 6000));
    int uneven = 0;
    for (std::size_t i = 1; i < recorded.points.size(); ++i)
        if (std::abs(recorded.points[i] - recorded.points[i - 1] - interval) > 0.02 * interval) ++uneven;
    constexpr int holdUps = 6000 / 120;
    EXPECT_LE(recorded.missed, holdUps / 4);
    EXPECT_LE(uneven, holdUps);
}

TEST(FrameGrid, TakesNoMoreFramesThanItMayOfAQuickerScreen) {
    for (const double rate : {60.5, 75.0, 144.0, 1000.0}) {
        const auto frames = record(changesAt(rate, 0.5, 0.05, static_cast<int>(100 * rate))).points.size();
        EXPECT_LE(frames, 60 * 100 + 3U) << rate;
        EXPECT_GE(frames, 59 * 100U) << rate;
    }
}

TEST(FrameGrid, StaysWhereChangesComeShortlyBeforeItsPoints) {
    FrameGrid grid(interval);
    grid.taken(begin);
    for (int i = 1; i < 100; ++i) {
        const double point = grid.pointOf(Change::cameJustNow, begin + (i - 0.25) * interval);
        EXPECT_NEAR(point, begin + i * interval, 1e-6);
        grid.taken(point);
    }
}

}  // namespace
}  // namespace tessaloom
