// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomTimeline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace tessaloom {
namespace {

constexpr RelativeRect target{0.5, 0.25, 0.5, 0.5};
constexpr RelativeRect otherTarget{0, 0.125, 0.25, 0.25};
constexpr RelativeRect wholeFrame;

ZoomKeyframe block(double start, double end, RelativeRect rect = target, double easeIn = 0.4,
                   double easeOut = 0.8) {
    return {Uuid::random(), start, end, rect, easeIn, easeOut};
}

RelativeRect curve(const std::vector<ZoomKeyframe>& keyframes, double time) {
    return ZoomTimeline::curve(keyframes, time, ZoomTimeline::bridgeGap);
}

void expectNear(const RelativeRect& actual, const RelativeRect& expected, double tolerance = 1e-12) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.width, expected.width, tolerance);
    EXPECT_NEAR(actual.height, expected.height, tolerance);
}

RelativeRect halfway(const RelativeRect& from, const RelativeRect& to) {
    return {(from.x + to.x) / 2, (from.y + to.y) / 2, (from.width + to.width) / 2,
            (from.height + to.height) / 2};
}

TEST(ZoomTimeline, WithoutKeyframesOrLengthShowsTheWholeFrame) {
    const std::vector<ZoomTimeline> timelines{ZoomTimeline(), ZoomTimeline({}, 10),
                                              ZoomTimeline({block(1, 2)}, 0),
                                              ZoomTimeline({block(1, 2)}, -5)};
    for (const ZoomTimeline& timeline : timelines) {
        EXPECT_TRUE(timeline.samples().empty());
        for (const double time : {-1.0, 0.0, 1.5, 1e9})
            EXPECT_EQ(timeline.rect(time), wholeFrame);
    }
}

TEST(ZoomTimeline, ABlockEasesInAndOutOfItsTarget) {
    const std::vector<ZoomKeyframe> keyframes{block(2, 6)};
    EXPECT_EQ(curve(keyframes, 1.999), wholeFrame);
    EXPECT_EQ(curve(keyframes, 2), wholeFrame);
    expectNear(curve(keyframes, 2.2), halfway(wholeFrame, target));
    EXPECT_EQ(curve(keyframes, 2.4000001), target);
    expectNear(curve(keyframes, 5.2), target);
    expectNear(curve(keyframes, 5.6), halfway(wholeFrame, target));
    EXPECT_EQ(curve(keyframes, 6), wholeFrame);
    EXPECT_EQ(curve(keyframes, 6.001), wholeFrame);
}

TEST(ZoomTimeline, EasingIsTheQuinticSmootherstep) {
    const double p = 0.1 / 0.4;
    const double eased = 6 * std::pow(p, 5) - 15 * std::pow(p, 4) + 10 * std::pow(p, 3);
    EXPECT_NEAR(curve({block(2, 6)}, 2.1).x, target.x * eased, 1e-12);
    EXPECT_NEAR(curve({block(2, 6)}, 2.1).width, 1 - 0.5 * eased, 1e-12);
}

TEST(ZoomTimeline, AShortBlockEasesOverHalfItsLength) {
    const std::vector<ZoomKeyframe> keyframes{block(2, 2.5)};
    expectNear(curve(keyframes, 2.125), halfway(wholeFrame, target));
    expectNear(curve(keyframes, 2.25), target);
    expectNear(curve(keyframes, 2.375), halfway(wholeFrame, target));
}

TEST(ZoomTimeline, WithoutEasingABlockCutsHard) {
    const std::vector<ZoomKeyframe> keyframes{block(2, 6, target, 0, 0)};
    EXPECT_EQ(curve(keyframes, 2), target);
    EXPECT_EQ(curve(keyframes, 6), target);
}

TEST(ZoomTimeline, AcrossAShortGapTheCameraGlides) {
    const std::vector<ZoomKeyframe> keyframes{block(-2, 0), block(1.2, 4, otherTarget)};
    EXPECT_EQ(curve(keyframes, -0.1), target) << "the side towards the gap doesn't ease";
    expectNear(curve(keyframes, 0.6), halfway(target, otherTarget));
    EXPECT_EQ(curve(keyframes, 1.3), otherTarget);
    expectNear(curve(keyframes, 3.6), halfway(wholeFrame, otherTarget));
}

TEST(ZoomTimeline, AcrossALongGapEachBlockEasesThroughTheWholeFrame) {
    const std::vector<ZoomKeyframe> keyframes{block(-2, 0), block(1.2000001, 4, otherTarget)};
    EXPECT_EQ(curve(keyframes, 0.6), wholeFrame);
    expectNear(curve(keyframes, -0.4), halfway(wholeFrame, target));
    expectNear(curve(keyframes, 1.4000001), halfway(wholeFrame, otherTarget));
}

TEST(ZoomTimeline, BlocksThatTouchJumpInTheCurveAndTheFirstOwnsTheInstant) {
    const std::vector<ZoomKeyframe> keyframes{block(2, 4), block(4, 8, otherTarget)};
    EXPECT_EQ(curve(keyframes, 4), target);
    EXPECT_EQ(curve(keyframes, 4.0000001), otherTarget);
}

TEST(ZoomTimeline, WhereBlocksOverlapTheEarlierInTheListWins) {
    const std::vector<ZoomKeyframe> keyframes{block(2, 6), block(3, 8, otherTarget)};
    EXPECT_EQ(curve(keyframes, 5.9), target);
    EXPECT_EQ(curve(keyframes, 6.1), otherTarget);
}

TEST(ZoomTimeline, ABlockWithoutLengthShowsAtItsInstantOnly) {
    EXPECT_EQ(curve({block(2, 2)}, 2), target);
    EXPECT_EQ(curve({block(2, 2)}, 2.0001), wholeFrame);
}

TEST(ZoomTimeline, TheTableFollowsTheCurveThroughTheFilter) {
    const std::vector<ZoomKeyframe> keyframes{block(0.5, 2), block(3, 4, otherTarget), block(4.5, 6)};
    const ZoomTimeline timeline(keyframes, 6.01);
    ASSERT_EQ(timeline.samples().size(), 363U);
    const double coefficient = (1.0 / 60) / (0.18 + 1.0 / 60);
    EXPECT_NEAR(coefficient, 0.0847457627, 1e-10);
    double x = curve(keyframes, 0).x;
    double height = curve(keyframes, 0).height;
    for (std::size_t index = 0; index < timeline.samples().size(); ++index) {
        const RelativeRect raw = curve(keyframes, static_cast<double>(index) / 60);
        x += (raw.x - x) * coefficient;
        height += (raw.height - height) * coefficient;
        ASSERT_NEAR(timeline.samples()[index].x, x, 1e-12);
        ASSERT_NEAR(timeline.samples()[index].height, height, 1e-12);
    }
}

TEST(ZoomTimeline, TheTableStartsOnTheCurveAndReachesTheTargetAfterIt) {
    const ZoomTimeline inForceFromTheStart({block(-1, 5)}, 5);
    EXPECT_EQ(inForceFromTheStart.rect(0), target);
    const ZoomTimeline timeline({block(2, 6)}, 10);
    EXPECT_EQ(timeline.rect(1.9), wholeFrame);
    EXPECT_LT(timeline.rect(2.4).x, target.x * 0.8) << "the curve is there already";
    EXPECT_NEAR(timeline.rect(4).x, target.x, 1e-3);
    EXPECT_GT(timeline.rect(6).x, 0.02) << "trails on the way out as well";
    EXPECT_NEAR(timeline.rect(9).x, 0, 1e-6);
}

TEST(ZoomTimeline, LooksUpBetweenSamples) {
    const ZoomTimeline timeline({block(1, 5)}, 6);
    const auto& samples = timeline.samples();
    expectNear(timeline.rect(75.25 / 60),
               {samples[75].x * 0.75 + samples[76].x * 0.25, samples[75].y * 0.75 + samples[76].y * 0.25,
                samples[75].width * 0.75 + samples[76].width * 0.25,
                samples[75].height * 0.75 + samples[76].height * 0.25});
}

TEST(ZoomTimeline, HoldsTheFirstRectangleBeforeAndTheLastAfterItself) {
    const ZoomTimeline timeline({block(-1, 100)}, 6);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(timeline.rect(-3), timeline.samples().front());
    EXPECT_EQ(timeline.rect(-infinity), timeline.samples().front());
    for (const double time : {6.1, 1e6, 1e300, infinity})
        EXPECT_EQ(timeline.rect(time), timeline.samples().back()) << time;
}

TEST(ZoomTimeline, ADamagedDurationDoesNotExhaustTheMemory) {
    const ZoomTimeline timeline({block(1, 2)}, 1e300);
    EXPECT_EQ(timeline.samples().size(), 24U * 3600 * 60 + 2);
}

// A search through the list for each sample would take hours.
TEST(ZoomTimeline, AnEndlessListOfBlocksInNoOrderIsStillATable) {
    constexpr int length = 24 * 3600;
    std::mt19937 random(4);
    std::vector<ZoomKeyframe> keyframes(200'000, block(0, 0));
    for (ZoomKeyframe& keyframe : keyframes) {
        keyframe.startPTS = static_cast<double>(random() % length);
        keyframe.endPTS = keyframe.startPTS - 1;
    }
    keyframes.push_back(block(length - 100, length));
    expectNear(ZoomTimeline(keyframes, length).rect(length - 50), target);
}

TEST(ZoomTimeline, NeverOvershootsItsTargets) {
    std::mt19937 random(2);
    std::uniform_real_distribution<double> times(0, 20);
    std::uniform_real_distribution<double> places(0, 0.5);
    for (int round = 0; round < 20; ++round) {
        std::vector<ZoomKeyframe> keyframes;
        for (int index = 0; index < 6; ++index) {
            const double start = times(random);
            keyframes.push_back(
                block(start, start + times(random) / 5, {places(random), places(random), 0.5, 0.5}));
        }
        const ZoomTimeline timeline(keyframes, 22);
        for (const RelativeRect& sample : timeline.samples()) {
            ASSERT_GE(sample.x, 0);
            ASSERT_LE(sample.x + sample.width, 1 + 1e-12);
            ASSERT_GE(sample.width, 0.5);
            ASSERT_EQ(sample.width, sample.height);
        }
    }
}

}  // namespace
}  // namespace tessaloom
