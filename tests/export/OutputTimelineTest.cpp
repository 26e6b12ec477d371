// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/OutputTimeline.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaloom {
namespace {

using Segments = std::vector<TimeSegment>;

TEST(OutputTimeline, CountsTheFramesOfTheKeptTime) {
    EXPECT_EQ(OutputTimeline(Segments{{0, 10}}, 1, 60).frameCount(), 600);
    EXPECT_EQ(OutputTimeline(Segments{{0, 10}}, 2, 60).frameCount(), 300);
    EXPECT_EQ(OutputTimeline(Segments{{1, 2}, {5, 5.5}}, 1, 60).frameCount(), 90);
    EXPECT_EQ(OutputTimeline(Segments{{0, 0.025}}, 1, 60).frameCount(), 2);
}

TEST(OutputTimeline, AlwaysHasAFrame) {
    EXPECT_EQ(OutputTimeline(Segments{}, 1, 60).frameCount(), 1);
    EXPECT_EQ(OutputTimeline(Segments{{3, 3}, {5, 4}}, 1, 60).frameCount(), 1);
    EXPECT_EQ(OutputTimeline(Segments{{0, 0.001}}, 1, 60).frameCount(), 1);
}

TEST(OutputTimeline, MapsFramesThroughCutsAndSpeed) {
    const OutputTimeline timeline(Segments{{1, 2}, {5, 6}}, 2, 60);
    EXPECT_DOUBLE_EQ(timeline.sourceTime(0), 1);
    EXPECT_NEAR(timeline.sourceTime(1), 1 + 1.0 / 30, 1e-12);
    EXPECT_DOUBLE_EQ(timeline.sourceTime(30), 2);
    EXPECT_NEAR(timeline.sourceTime(31), 5 + 1.0 / 30, 1e-12);
    EXPECT_DOUBLE_EQ(timeline.sourceTime(1000), 6);
}

TEST(OutputTimeline, WithoutSegmentsOutputTimeIsSourceTime) {
    const OutputTimeline timeline(Segments{}, 1, 60);
    EXPECT_DOUBLE_EQ(timeline.sourceTime(30), 0.5);
    EXPECT_EQ(timeline.sourceRange(), std::nullopt);
}

TEST(OutputTimeline, ReadsFromTheFirstStartToTheLastEnd) {
    EXPECT_EQ(OutputTimeline(Segments{{0, 0}, {1, 2}, {5, 6}}, 1, 60).sourceRange(), (TimeSegment{1, 6}));
}

TEST(OutputTimeline, ASpeedThatIsNoneCountsAsNormal) {
    EXPECT_EQ(OutputTimeline(Segments{{0, 1}}, 0, 60).frameCount(), 60);
    EXPECT_EQ(OutputTimeline(Segments{{0, 1}}, -2, 60).frameCount(), 60);
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(OutputTimeline(Segments{{0, 1}}, none, 60).frameCount(), 60);
}

TEST(OutputTimeline, ADamagedLengthDoesNotOverflow) {
    EXPECT_GT(OutputTimeline(Segments{{0, 1e300}}, 1, 60).frameCount(), 1);
}

}  // namespace
}  // namespace tessaloom
