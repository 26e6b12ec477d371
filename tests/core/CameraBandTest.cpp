// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CameraBand.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using Bands = std::vector<CameraBand>;
using Times = std::vector<double>;
using Ranges = std::vector<TimeSegment>;

CutInputs splitAt(Times points) {
    CutInputs inputs;
    inputs.trimEnd = 30;
    inputs.totalDuration = 30;
    inputs.splitPoints = std::move(points);
    return inputs;
}

TEST(CameraBand, WithoutHiddenRangesTheCameraIsAlwaysOn) {
    const Bands bands = cameraBands(splitAt({20, 10}), {});
    EXPECT_EQ(bands, (Bands{{{0, 10}, true}, {{10, 20}, true}, {{20, 30}, true}}));
    EXPECT_TRUE(cameraInitiallyShown(bands));
    EXPECT_EQ(cameraTransitions(bands), Times{});
}

TEST(CameraBand, AHiddenRangeTurnsTheCameraOffBetweenItsCuts) {
    const Bands bands = cameraBands(splitAt({10, 20}), Ranges{{10, 20}});
    EXPECT_EQ(bands, (Bands{{{0, 10}, true}, {{10, 20}, false}, {{20, 30}, true}}));
    EXPECT_TRUE(cameraInitiallyShown(bands));
    EXPECT_EQ(cameraTransitions(bands), (Times{10, 20}));
}

TEST(CameraBand, TheMiddleDecides) {
    EXPECT_FALSE(cameraBands(splitAt({}), Ranges{{15, 15}}).front().shown)
        << "both ends of a range belong to it";
    EXPECT_TRUE(cameraBands(splitAt({}), Ranges{{15.001, 30}}).front().shown);
    EXPECT_TRUE(cameraBands(splitAt({}), Ranges{{0, 14.999}}).front().shown);
    EXPECT_TRUE(cameraBands(splitAt({}), Ranges{{16, 14}}).front().shown)
        << "a range that ends before it starts";
    EXPECT_FALSE(cameraBands(splitAt({}), Ranges{{0, 1}, {14, 16}}).front().shown) << "any range will do";
}

TEST(CameraBand, NeighboursOfOneKindAreNoTransition) {
    const Bands bands = cameraBands(splitAt({5, 10, 20, 25}), Ranges{{0, 10}, {25, 30}});
    EXPECT_FALSE(cameraInitiallyShown(bands));
    EXPECT_EQ(cameraTransitions(bands), (Times{10, 25}));
}

TEST(CameraBand, BandsLieWithinTheTrimWhicheverHandleIsFirst) {
    CutInputs inputs = splitAt({5, 10, 28});
    inputs.trimStart = 25;
    inputs.trimEnd = 8;
    EXPECT_EQ(cameraBands(inputs, Ranges{{0, 10}}), (Bands{{{8, 10}, false}, {{10, 25}, true}}));
}

TEST(CameraBand, SliversAreNoBands) {
    const Bands bands = cameraBands(splitAt({0.005, 10, 10.015, 20}), Ranges{{10, 10.015}});
    EXPECT_EQ(bands, (Bands{{{0, 10}, true}, {{10.015, 20}, true}, {{20, 30}, true}}))
        << "a split at the trim's edge doesn't count, and a piece of 0.015 s is too short";
}

TEST(CameraBand, RemovedBlocksStillHaveABand) {
    CutInputs inputs = splitAt({10});
    inputs.removedRanges = {{0, 10}};
    EXPECT_EQ(cameraBands(inputs, {}), (Bands{{{0, 10}, true}, {{10, 30}, true}}));
}

TEST(CameraBand, AnEmptyTrimHasNoBandsAndTheCameraOn) {
    CutInputs inputs = splitAt({});
    inputs.trimEnd = 0;
    const Bands bands = cameraBands(inputs, Ranges{{0, 30}});
    EXPECT_TRUE(bands.empty());
    EXPECT_TRUE(cameraInitiallyShown(bands));
    EXPECT_TRUE(cameraTransitions(bands).empty());
}

}  // namespace
}  // namespace tessaloom
