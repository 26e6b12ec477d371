// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomTimeline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "motion/DenseZoomTable.h"

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

bool sameBits(const RelativeRect& a, const RelativeRect& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Overlapping, reversed, without length and in no order, some with targets far outside the frame.
std::vector<ZoomKeyframe> damagedKeyframes(std::mt19937& random, double length) {
    std::uniform_real_distribution<double> times(-0.1 * length, 1.1 * length);
    std::uniform_real_distribution<double> places(-0.5, 1);
    std::uniform_real_distribution<double> lengths(-1, 10);
    constexpr double eases[] = {-1, 0, 0.4, 0.8, 3, 100};
    std::vector<ZoomKeyframe> keyframes(random() % 8 + 1);
    for (ZoomKeyframe& keyframe : keyframes) {
        const double start = random() % 3 == 0 ? std::round(times(random)) : times(random);
        const double stretch = random() % 4 == 0 ? 0 : lengths(random) * (random() % 3 == 0 ? 50 : 1);
        const double scale = random() % 16 == 0 ? 1.7e308 : 1;
        keyframe = block(start, start + stretch,
                         {places(random) * scale, places(random) * scale, places(random), places(random)},
                         eases[random() % 6], eases[random() % 6]);
        if (random() % 4 == 0) keyframe.targetRect = {};
    }
    return keyframes;
}

TEST(ZoomTimeline, WithoutKeyframesOrLengthShowsTheWholeFrame) {
    const std::vector<ZoomTimeline> timelines{ZoomTimeline(), ZoomTimeline({}, 10),
                                              ZoomTimeline({block(1, 2)}, 0),
                                              ZoomTimeline({block(1, 2)}, -5)};
    for (const ZoomTimeline& timeline : timelines) {
        EXPECT_EQ(timeline.sampleCount(), 0U);
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

TEST(ZoomTimeline, ABlockWithoutLengthBetweenTwoSamplesHasNoEffect) {
    const ZoomTimeline missed({block(2.005, 2.005)}, 5);
    EXPECT_EQ(missed.storedCount(), 1U);
    EXPECT_EQ(missed.rect(2.005), wholeFrame);
    const ZoomTimeline met({block(2, 2)}, 5);
    EXPECT_GT(met.rect(2).x, 0) << "a sample falls on it";
    EXPECT_LT(met.rect(2).x, 0.1 * target.x);
}

TEST(ZoomTimeline, WhereBlocksTouchOnlyTheFilterSoftensTheJump) {
    const ZoomTimeline timeline({block(-10, 2), block(2, 8, otherTarget)}, 8);
    EXPECT_EQ(timeline.sample(120), target) << "at 2 s";
    const double coefficient = (1.0 / 60) / (0.18 + 1.0 / 60);
    double left = target.x - otherTarget.x;
    for (std::uint64_t index = 121; index < 200; ++index) {
        left *= 1 - coefficient;
        ASSERT_NEAR(timeline.sample(index).x, otherTarget.x + left, 1e-12);
    }
}

TEST(ZoomTimeline, TheTableFollowsTheCurveThroughTheFilter) {
    const std::vector<ZoomKeyframe> keyframes{block(0.5, 2), block(3, 4, otherTarget), block(4.5, 6)};
    const ZoomTimeline timeline(keyframes, 6.01);
    ASSERT_EQ(timeline.sampleCount(), 363U);
    const double coefficient = (1.0 / 60) / (0.18 + 1.0 / 60);
    EXPECT_NEAR(coefficient, 0.0847457627, 1e-10);
    double x = curve(keyframes, 0).x;
    double height = curve(keyframes, 0).height;
    for (std::uint64_t index = 0; index < timeline.sampleCount(); ++index) {
        const RelativeRect raw = curve(keyframes, static_cast<double>(index) / 60);
        x += (raw.x - x) * coefficient;
        height += (raw.height - height) * coefficient;
        ASSERT_NEAR(timeline.sample(index).x, x, 1e-12);
        ASSERT_NEAR(timeline.sample(index).height, height, 1e-12);
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
    const RelativeRect before = timeline.sample(75);
    const RelativeRect after = timeline.sample(76);
    expectNear(timeline.rect(75.25 / 60),
               {before.x * 0.75 + after.x * 0.25, before.y * 0.75 + after.y * 0.25,
                before.width * 0.75 + after.width * 0.25, before.height * 0.75 + after.height * 0.25});
}

TEST(ZoomTimeline, HoldsTheFirstRectangleBeforeAndTheLastAfterItself) {
    const ZoomTimeline timeline({block(-1, 100)}, 6);
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(timeline.rect(-3), timeline.sample(0));
    EXPECT_EQ(timeline.rect(-infinity), timeline.sample(0));
    for (const double time : {6.1, 1e6, 1e300, infinity})
        EXPECT_EQ(timeline.rect(time), timeline.sample(timeline.sampleCount() - 1)) << time;
}

TEST(ZoomTimeline, AgreesWithTheDenseTableToTheLastBit) {
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        const double length = round % 2 == 0 ? 40 : 3000;
        const auto keyframes = damagedKeyframes(random, length);
        const ZoomTimeline timeline(keyframes, length);
        const auto dense = test::DenseZoomTable::over(keyframes, length);
        ASSERT_EQ(timeline.sampleCount(), dense.samples.size());
        for (std::size_t index = 0; index < dense.samples.size(); ++index)
            ASSERT_TRUE(sameBits(timeline.sample(index), dense.samples[index])) << round << " at " << index;
        std::uniform_real_distribution<double> times(-1, length + 1);
        for (int lookup = 0; lookup < 1000; ++lookup) {
            const double time = times(random);
            ASSERT_TRUE(sameBits(timeline.rect(time), dense.rect(time))) << round << " at " << time;
        }
    }
}

TEST(ZoomTimeline, FarFromTheStartAsWell) {
    const double far = 1e6 + 0.123;
    const std::vector<ZoomKeyframe> keyframes{block(1, 5), block(far, far + 300),
                                              block(far + 301, far + 307, otherTarget)};
    const ZoomTimeline timeline(keyframes, 1.1e6);
    const auto early = test::DenseZoomTable::over(keyframes, 400);
    RelativeRect previous = early.samples.back();
    ASSERT_TRUE(sameBits(previous, test::DenseZoomTable::filtered(previous, wholeFrame)))
        << "the filter has settled, and the curve rests till the second block";
    ASSERT_TRUE(sameBits(timeline.rect(5e5), previous));
    const auto first = static_cast<std::uint64_t>(far * 60) - 5;
    for (std::uint64_t index = first; index < first + 60 * 600; ++index) {
        const double time = static_cast<double>(index) * (1.0 / 60);
        previous = test::DenseZoomTable::filtered(previous, test::DenseZoomTable::curve(keyframes, time));
        ASSERT_TRUE(sameBits(timeline.sample(index), previous)) << index;
    }
    EXPECT_TRUE(sameBits(timeline.rect(1.09e6), timeline.rect(1.2e6)));
}

TEST(ZoomTimeline, IsAsLargeAsItsMotionNotItsDuration) {
    constexpr double longestSettling = 150;
    const std::vector<ZoomKeyframe> keyframes{block(1, 5), block(1e8, 1.5e8), block(9e8, 1e9)};
    const ZoomTimeline timeline(keyframes, 1e9);
    EXPECT_EQ(timeline.sampleCount(), 60'000'000'002U);
    EXPECT_LT(timeline.storedCount(), 6 * longestSettling * 60);
    expectNear(timeline.rect(1.2e8), target);
    expectNear(timeline.rect(7e8), wholeFrame);
    expectNear(timeline.rect(9.5e8), target);
    EXPECT_EQ(ZoomTimeline({block(-1, 2e9)}, 1e9).storedCount(), 1U) << "in force all the time";
}

TEST(ZoomTimeline, NeitherADamagedDurationNorAnEndlessEaseExhaustsTheMemory) {
    const ZoomTimeline damaged({block(1, 2)}, 1e300);
    EXPECT_LT(damaged.storedCount(), 10'000U);
    expectNear(damaged.rect(1.5), test::DenseZoomTable::over({block(1, 2)}, 2).rect(1.5));
    expectNear(damaged.rect(1e299), wholeFrame);
    const ZoomTimeline endless({block(0, 1e9, target, 4e8, 4e8)}, 1e9);
    EXPECT_EQ(endless.storedCount(), ZoomTimeline::longestMotion);
    EXPECT_EQ(endless.rect(1e9), endless.rect(24 * 3600 + 1)) << "the last that was worked out holds";
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
    for (ZoomKeyframe& keyframe : keyframes) {
        keyframe.startPTS *= 10'000;
        keyframe.endPTS *= 10'000;
    }
    expectNear(ZoomTimeline(keyframes, length * 1e4).rect((length - 50) * 1e4), target);
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
        for (std::uint64_t index = 0; index < timeline.sampleCount(); ++index) {
            const RelativeRect sample = timeline.sample(index);
            ASSERT_GE(sample.x, 0);
            ASSERT_LE(sample.x + sample.width, 1 + 1e-12);
            ASSERT_GE(sample.width, 0.5);
            ASSERT_EQ(sample.width, sample.height);
        }
    }
}

}  // namespace
}  // namespace tessaloom
