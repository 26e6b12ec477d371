// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CutTimeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaloom {
namespace {

using Ranges = std::vector<TimeSegment>;

CutInputs whole(double duration) {
    CutInputs inputs;
    inputs.trimEnd = duration;
    inputs.totalDuration = duration;
    return inputs;
}

double totalLength(const Ranges& ranges) {
    double sum = 0;
    for (const TimeSegment& range : ranges)
        sum += range.length();
    return sum;
}

TEST(CutTimeline, WithoutCutsTheResultIsTheWholeRecording) {
    EXPECT_EQ(keptRanges(whole(60)), (Ranges{{0, 60}}));
    EXPECT_EQ(playableRanges(whole(60)), (Ranges{{0, 60}}));
    EXPECT_EQ(timelineSegments(whole(60)), (std::vector<ClipSegment>{{{0, 60}, false}}));
}

TEST(CutTimeline, TheTrimCountsForTheResultButNotForPlayback) {
    CutInputs inputs = whole(60);
    inputs.trimStart = 50;
    inputs.trimEnd = 10;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{10, 50}})) << "whichever handle is first";
    EXPECT_EQ(playableRanges(inputs), (Ranges{{0, 60}}));
}

TEST(CutTimeline, AnEmptyRecordingStillHasSomethingToPlay) {
    EXPECT_EQ(playableRanges(whole(0)), (Ranges{{0, 0.01}}));
    EXPECT_EQ(keptRanges(whole(0)), (Ranges{{0, 0}}));
}

TEST(CutTimeline, SilencesAreRemovedOnlyWhereSpeechIsKnown) {
    CutInputs inputs = whole(60);
    inputs.removeSilences = true;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{0, 60}}));
    inputs.keptSegments = {{1, 2}, {3, 4}, {58, 70}, {59.99, 60.01}, {80, 90}};
    EXPECT_EQ(keptRanges(inputs), (Ranges{{1, 2}, {3, 4}, {58, 60}}));
    inputs.trimStart = 1.5;
    inputs.trimEnd = 3.015;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{1.5, 2}})) << "3 to 3.015 is too short to keep";
    EXPECT_EQ(playableRanges(inputs), (Ranges{{1, 2}, {3, 4}, {58, 60}}));
    inputs.removeSilences = false;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{1.5, 3.015}}));
}

TEST(CutTimeline, FillersCountOnlyWhenSwitchedOn) {
    CutInputs inputs = whole(10);
    inputs.fillerRanges = {{4, 5}};
    EXPECT_EQ(keptRanges(inputs), (Ranges{{0, 10}}));
    inputs.removeFillers = true;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{0, 4}, {5, 10}}));
    inputs.removedRanges = {{8, 12}};
    EXPECT_EQ(keptRanges(inputs), (Ranges{{0, 4}, {5, 8}}));
}

TEST(CutTimeline, RemovingEverythingRemovesNothing) {
    CutInputs inputs = whole(10);
    inputs.removedRanges = {{0, 10}};
    EXPECT_EQ(keptRanges(inputs), (Ranges{{0, 10}}));
    EXPECT_EQ(playableRanges(inputs), (Ranges{{0, 10}}));
    inputs.removeSilences = true;
    inputs.keptSegments = {{1, 2}, {11, 12}};
    inputs.totalDuration = 12;
    inputs.trimEnd = 12;
    EXPECT_EQ(keptRanges(inputs), (Ranges{{11, 12}})) << "a neighbour outside the cut stays alone";
}

TEST(CutTimeline, SubtractDropsSlivers) {
    EXPECT_EQ(subtract({{10, 10.015}}, {{10, 20}}), (Ranges{{10.015, 20}}));
    EXPECT_EQ(subtract({{10.01, 20}}, {{10, 20}}), Ranges{});
    EXPECT_EQ(subtract({{12, 19.99}}, {{10, 20}}), (Ranges{{10, 12}}));
    CutInputs inputs = whole(20);
    inputs.trimStart = 10;
    inputs.removedRanges = {{10.01, 20}};
    EXPECT_EQ(keptRanges(inputs), (Ranges{{10, 20}}));
}

TEST(CutTimeline, SubtractLeavesWhatACutOnlyTouches) {
    EXPECT_EQ(subtract({{0, 10}, {20, 30}}, {{10, 20}}), (Ranges{{10, 20}}));
}

TEST(CutTimeline, AReversedCutIsAPointThatSplits) {
    EXPECT_EQ(subtract({{15, 5}}, {{10, 20}}), (Ranges{{10, 15}, {15, 20}}));
    EXPECT_EQ(subtract({{25, 5}}, {{10, 20}}), (Ranges{{10, 20}}));
    EXPECT_EQ(subtract({{10, 5}}, {{10, 20}}), (Ranges{{10, 20}}));
}

TEST(CutTimeline, SubtractKeepsItsPromisesOnAnyCuts) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> times(0, 30);
    for (int round = 0; round < 500; ++round) {
        Ranges removed;
        for (int index = 0; index < round % 7; ++index)
            removed.push_back({times(random), times(random)});
        const Ranges ranges{{2, 9}, {9, 15}, {16, 28}};
        const Ranges left = subtract(removed, ranges);
        Ranges shuffled = removed;
        std::ranges::shuffle(shuffled, random);
        EXPECT_EQ(subtract(shuffled, ranges), left) << "the order of the cuts doesn't matter";
        EXPECT_LE(totalLength(left), totalLength(ranges) + 1e-9);
        EXPECT_TRUE(std::ranges::is_sorted(left, {}, &TimeSegment::start));
        for (const TimeSegment& piece : left) {
            const double middle = (piece.start + piece.end) / 2;
            EXPECT_GT(piece.length(), 0.02 - 1e-9);
            EXPECT_TRUE(std::ranges::any_of(ranges, [&](const TimeSegment& range) {
                return range.start <= piece.start && piece.end <= range.end;
            }));
            for (const TimeSegment& cut : removed)
                EXPECT_FALSE(cut.start < middle && middle < cut.end) << "nothing removed comes back";
        }
    }
}

TEST(CutTimeline, SplitPointsMakeBlocksAndTheirMiddleDecides) {
    CutInputs inputs = whole(10);
    inputs.splitPoints = {7, 3, 0.005, 9.995, 12, -1};
    inputs.removedRanges = {{3, 7}};
    EXPECT_EQ(timelineSegments(inputs),
              (std::vector<ClipSegment>{{{0, 3}, false}, {{3, 7}, true}, {{7, 10}, false}}));
    inputs.splitPoints = {3, 9};
    EXPECT_TRUE(timelineSegments(inputs)[1].removed) << "the middle, 6, is still in the removed range";
    inputs.splitPoints = {2, 3.5};
    EXPECT_FALSE(timelineSegments(inputs)[1].removed);
}

TEST(CutTimeline, BlocksOfAFlashAreSkipped) {
    CutInputs inputs = whole(10);
    inputs.splitPoints = {5, 5.02, 5.02};
    EXPECT_EQ(timelineSegments(inputs), (std::vector<ClipSegment>{{{0, 5}, false}, {{5.02, 10}, false}}));
}

TEST(CutTimeline, SegmentsWithoutALengthAreNoRanges) {
    EXPECT_EQ(validRanges(Ranges{{1, 2}, {3, 3}, {5, 4}, {0, 1}}), (Ranges{{1, 2}, {0, 1}}));
}

TEST(CutTimeline, APositionInTheResultHasItsSourceTime) {
    const Ranges ranges{{10, 12}, {20, 23}};
    const std::pair<double, double> cases[] = {{-1, 10},    {0, 10}, {1, 11}, {2, 12},
                                               {2.5, 20.5}, {5, 23}, {99, 23}};
    for (const auto& [offset, source] : cases)
        EXPECT_DOUBLE_EQ(sourceTime(ranges, offset), source) << offset;
    EXPECT_EQ(sourceTime({}, -3.5), -3.5);
}

TEST(CutTimeline, ASourceTimeHasItsPositionInTheResult) {
    const Ranges ranges{{10, 12}, {20, 23}};
    const std::pair<double, double> cases[] = {{5, 0},  {10, 0}, {11, 1}, {12, 2},
                                               {15, 2}, {20, 2}, {21, 3}, {50, 5}};
    for (const auto& [source, offset] : cases)
        EXPECT_DOUBLE_EQ(resultTime(ranges, source), offset) << source;
}

TEST(CutTimeline, BothWaysAgreeInsideTheRanges) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> times(0, 25);
    const Ranges ranges = subtract({{3, 4}, {8, 8.5}, {20, 21}}, {{1, 25}});
    for (int round = 0; round < 500; ++round) {
        const double offset = times(random);
        const double expected = std::min(offset, totalLength(ranges));
        ASSERT_NEAR(resultTime(ranges, sourceTime(ranges, offset)), expected, 1e-9);
    }
}

TEST(CutTimeline, PlaybackInACutGoesOnAtTheNextKeptStart) {
    const Ranges ranges{{10, 12}, {20, 23}};
    EXPECT_EQ(nextKeptStart(ranges, 5), 10);
    EXPECT_EQ(nextKeptStart(ranges, 9.9995), std::nullopt);
    EXPECT_EQ(nextKeptStart(ranges, 12.0005), std::nullopt);
    EXPECT_EQ(nextKeptStart(ranges, 12.01), 20);
    EXPECT_EQ(nextKeptStart(ranges, 30), std::nullopt);
}

}  // namespace
}  // namespace tessaloom
