// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/CursorTrack.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaloom {
namespace {

TEST(CursorTrack, AnEmptyTrackHasNoPositionAndNoRest) {
    EXPECT_EQ(CursorTrack().position(1), std::nullopt);
    EXPECT_EQ(CursorTrack().idleSeconds(1, 0.004, 4), 0);
}

TEST(CursorTrack, MovesStraightBetweenSamplesAndHoldsOutside) {
    const CursorTrack track({{1, 0, 1}, {2, 0.5, 0.5}, {4, 1, 0}});
    EXPECT_EQ(track.position(0), (RelativePoint{0, 1}));
    EXPECT_EQ(track.position(1.5), (RelativePoint{0.25, 0.75}));
    EXPECT_EQ(track.position(2), (RelativePoint{0.5, 0.5}));
    EXPECT_EQ(track.position(3.5), (RelativePoint{0.875, 0.125}));
    EXPECT_EQ(track.position(9), (RelativePoint{1, 0}));
}

TEST(CursorTrack, OfSamplesAtTheSameTimeTheEarlierPlaceIsUsed) {
    const CursorTrack track({{0, 0, 0}, {1, 0.25, 0.25}, {1, 0.75, 0.75}, {2, 1, 1}});
    EXPECT_EQ(track.position(1), (RelativePoint{0.25, 0.25}));
    EXPECT_EQ(CursorTrack({{1, 0.25, 0.25}, {1, 0.75, 0.75}}).position(1), (RelativePoint{0.25, 0.25}));
}

TEST(CursorTrack, FindsWhatALinearSearchFinds) {
    std::mt19937 random(4);
    std::uniform_real_distribution<double> steps(0.001, 0.02);
    std::uniform_real_distribution<double> places(0, 1);
    std::vector<CursorSample> samples;
    double time = 0;
    for (int index = 0; index < 500; ++index)
        samples.push_back({time += steps(random), places(random), places(random)});
    const CursorTrack track(samples);
    std::uniform_real_distribution<double> looks(samples.front().pts, samples.back().pts);
    for (int round = 0; round < 2000; ++round) {
        const double at = looks(random);
        std::size_t after = 1;
        while (samples[after].pts < at)
            ++after;
        const CursorSample& from = samples[after - 1];
        const CursorSample& to = samples[after];
        const double fraction = (at - from.pts) / (to.pts - from.pts);
        ASSERT_NEAR(track.position(at)->x, from.x + (to.x - from.x) * fraction, 1e-12);
        ASSERT_NEAR(track.position(at)->y, from.y + (to.y - from.y) * fraction, 1e-12);
    }
}

TEST(CursorTrack, SmoothingTrailsThePath) {
    const CursorTrack track({{0, 0, 1}, {1, 1, 0}, {2, 1, 0}});
    EXPECT_EQ(track.smoothed(0), track);
    EXPECT_EQ(track.smoothed(-1), track);
    const std::pair<double, double> coefficients[] = {{0.5, 0.525}, {1, 0.05}, {2, 0.04}};
    for (const auto& [amount, coefficient] : coefficients) {
        const CursorTrack smoothed = track.smoothed(amount);
        const auto& samples = smoothed.samples();
        EXPECT_EQ(samples[0], (CursorSample{0, 0, 1})) << "the first sample stays";
        EXPECT_NEAR(samples[1].x, coefficient, 1e-12);
        EXPECT_NEAR(samples[1].y, 1 - coefficient, 1e-12);
        EXPECT_NEAR(samples[2].x, coefficient + (1 - coefficient) * coefficient, 1e-12);
        EXPECT_EQ(samples[2].pts, 2);
    }
}

TEST(CursorTrack, OneSampleIsNotSmoothed) {
    const CursorTrack track({{1, 0.5, 0.5}});
    EXPECT_EQ(track.smoothed(1), track);
}

TEST(CursorTrack, RestIsCountedInQuartersOfASecond) {
    const CursorTrack track({{0, 0, 0}, {10, 0, 0}, {10.01, 0.5, 0.5}, {20, 0.5, 0.5}});
    EXPECT_EQ(track.idleSeconds(10.1, 0.004, 4), 0);
    EXPECT_EQ(track.idleSeconds(10.3, 0.004, 4), 0.25);
    EXPECT_EQ(track.idleSeconds(12, 0.004, 4), 1.75);
    EXPECT_EQ(track.idleSeconds(19, 0.004, 4), 4);
    EXPECT_EQ(track.idleSeconds(12, 0.004, 1.5), 1.5);
    EXPECT_EQ(track.idleSeconds(12, 0.004, 0.2), 0.2) << "shorter than a step";
}

TEST(CursorTrack, SmallMovementsStillRest) {
    const CursorTrack track({{0, 0.5, 0.5}, {10, 0.5, 0.5}, {10.01, 0.504, 0.5}, {20, 0.504, 0.5}});
    EXPECT_EQ(track.idleSeconds(11, 0.0041, 4), 4);
    EXPECT_EQ(track.idleSeconds(11, 0.0039, 4), 0.75);
}

TEST(CursorTrack, BeforeAndLongAfterThePathThePointerRests) {
    const CursorTrack track({{0, 0, 0}, {1, 1, 1}});
    EXPECT_EQ(track.idleSeconds(-5, 0.004, 4), 4);
    EXPECT_EQ(track.idleSeconds(9, 0.004, 4), 4);
}

}  // namespace
}  // namespace tessaloom
