// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ZoomEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace tessaloom {
namespace {

using EventType = InputEvent::EventType;

InputEvent click(double pts, double x = 0.5, double y = 0.5, EventType type = EventType::leftClick) {
    return {pts, type, RelativePoint{x, y}, std::nullopt};
}

InputEvent key(double pts) {
    return {pts, EventType::keyDown, std::nullopt, "a"};
}

std::vector<ZoomKeyframe> generate(std::vector<InputEvent> events, double duration = 100,
                                   double zoomFactor = 2) {
    EventLog log;
    log.events = std::move(events);
    ZoomEngine engine;
    engine.settings.zoomFactor = zoomFactor;
    return engine.generate(log, duration);
}

RelativeRect target(double x, double y, double zoomFactor = 2) {
    return generate({click(5, x, y)}, 100, zoomFactor).at(0).targetRect;
}

TEST(ZoomEngine, OneClickMakesOneBlockAroundIt) {
    const auto keyframes = generate({click(5, 0.5, 0.4)});
    ASSERT_EQ(keyframes.size(), 1U);
    EXPECT_DOUBLE_EQ(keyframes[0].startPTS, 4.7);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 6.2);
    EXPECT_EQ(keyframes[0].targetRect, (RelativeRect{0.25, 0.4 - 0.25, 0.5, 0.5}));
    EXPECT_EQ(keyframes[0].easeIn, 0.4);
    EXPECT_EQ(keyframes[0].easeOut, 0.8);
}

TEST(ZoomEngine, EveryKindOfClickCountsAndNothingElse) {
    for (const EventType type : {EventType::leftClick, EventType::rightClick, EventType::doubleClick})
        EXPECT_EQ(generate({click(5, 0.5, 0.5, type)}).size(), 1U);
    EXPECT_TRUE(generate({click(5, 0.5, 0.5, EventType::scroll)}).empty());
    EXPECT_TRUE(generate({click(5, 0.5, 0.5, EventType::keyDown)}).empty());
}

TEST(ZoomEngine, WithoutPlacedClicksThereIsNoZoom) {
    EXPECT_TRUE(generate({}).empty());
    EXPECT_TRUE(generate({key(1), key(2)}).empty());
    EXPECT_TRUE(generate({{1, EventType::leftClick, std::nullopt, std::nullopt}, key(1.5)}).empty());
}

TEST(ZoomEngine, WhatIsDamagedInItsPlaceStillCountsInItsTime) {
    const EventLog log = decodeEventLog(R"({"events": [
        {"pts": 5, "type": "leftClick", "location": {"x": 0.5, "y": 0.5}},
        {"pts": 6, "type": "keyDown", "location": "here"},
        {"pts": 40, "type": "leftClick", "location": "there"}]})");
    EXPECT_EQ(logDuration(log), 40);
    const auto keyframes = ZoomEngine{}.generate(log, logDuration(log));
    ASSERT_EQ(keyframes.size(), 1U) << "a click without a place can't zoom";
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 7.2) << "typing keeps the frame up";
}

TEST(ZoomEngine, ARecordingWithoutALengthHasNoZoom) {
    EXPECT_TRUE(generate({click(1)}, 0).empty());
    EXPECT_TRUE(generate({click(1)}, -1).empty());
    EXPECT_TRUE(generate({click(1)}, std::numeric_limits<double>::quiet_NaN()).empty());
}

TEST(ZoomEngine, ClicksJoinUpToTheGap) {
    const auto joined = generate({click(4), click(5.5)});
    ASSERT_EQ(joined.size(), 1U);
    EXPECT_DOUBLE_EQ(joined[0].endPTS, 6.7);
    EXPECT_EQ(generate({click(4), click(5.500001)}).size(), 2U);
    EXPECT_EQ(generate({click(4), click(5.5), click(7), click(8.5)}).size(), 1U) << "from the last click";
}

TEST(ZoomEngine, ClicksJoinUpToTheRadius) {
    EXPECT_EQ(generate({click(4, 0.5), click(4.4, 0.63)}).size(), 1U);
    EXPECT_EQ(generate({click(4, 0.5), click(4.4, 0.7)}).size(), 2U);
    EXPECT_EQ(generate({click(4, 0.5, 0.5), click(4.4, 0.61, 0.61)}).size(), 2U) << "straight, not by axis";
}

TEST(ZoomEngine, TheCentreIsTheMeanOfTheClicks) {
    const auto keyframes = generate({click(4, 0.4, 0.5), click(4.5, 0.5, 0.5), click(5, 0.51, 0.56)});
    ASSERT_EQ(keyframes.size(), 1U);
    EXPECT_NEAR(keyframes[0].targetRect.x, (0.4 + 0.5 + 0.51) / 3 - 0.25, 1e-12);
    EXPECT_NEAR(keyframes[0].targetRect.y, (0.5 + 0.5 + 0.56) / 3 - 0.25, 1e-12);
}

TEST(ZoomEngine, AClickNeverGoesBackToAnOlderEpisode) {
    EXPECT_EQ(generate({click(4, 0.2), click(4.3, 0.8), click(4.6, 0.2)}).size(), 3U);
}

// The running centre leaves the third click behind, the mean of both groups doesn't.
TEST(ZoomEngine, NeighbouringEpisodesThatEndUpCloseMerge) {
    const auto keyframes = generate({click(4, 0.40), click(4.1, 0.551), click(4.2, 0.46), click(4.3, 0.46)});
    ASSERT_EQ(keyframes.size(), 1U);
    EXPECT_NEAR(keyframes[0].targetRect.x, (0.40 + 0.551 + 0.46 + 0.46) / 4 - 0.25, 1e-12);
    EXPECT_DOUBLE_EQ(keyframes[0].startPTS, 3.7);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 5.5);
}

TEST(ZoomEngine, EpisodesMoreThanTheMergeGapApartStayTwo) {
    EXPECT_EQ(generate({click(4, 0.40), click(4.1, 0.551), click(4.2, 0.46)}).size(), 1U);
    EXPECT_EQ(generate({click(4, 0.40), click(4.6, 0.551), click(4.7, 0.46)}).size(), 2U);
}

TEST(ZoomEngine, ABlockShorterThanTheDwellIsDropped) {
    EXPECT_TRUE(generate({click(0.1)}, 0.5).empty());
    const auto keyframes = generate({click(0.1)}, 0.6);
    ASSERT_EQ(keyframes.size(), 1U) << "exactly the dwell stays";
    EXPECT_EQ(keyframes[0].startPTS, 0);
    EXPECT_EQ(keyframes[0].endPTS, 0.6);
}

TEST(ZoomEngine, TypingKeepsTheFrameUp) {
    const auto keyframes = generate({click(10, 0.2), key(11), key(12), key(13), key(14.4), click(15, 0.8)});
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 15.6);
    EXPECT_DOUBLE_EQ(keyframes[1].startPTS, 14.7);
}

TEST(ZoomEngine, TypingAfterAPauseDoesNotReviveAZoom) {
    const auto keyframes = generate({click(10, 0.2), key(11), key(12), key(13), key(14.6), click(15, 0.8)});
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 14.2);
}

TEST(ZoomEngine, TypingBeforeTheFirstClickNeverCounts) {
    const auto keyframes = generate({key(4.9), click(5), key(3)});
    ASSERT_EQ(keyframes.size(), 1U);
    EXPECT_DOUBLE_EQ(keyframes[0].startPTS, 4.7);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 6.2);
}

TEST(ZoomEngine, AKeyBelongsToTheLastEpisodeThatHasBegun) {
    const auto keyframes = generate({click(10, 0.2), click(11, 0.8), key(11.5), key(12.4)});
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 11.2);
    EXPECT_DOUBLE_EQ(keyframes[1].endPTS, 13.6);
}

TEST(ZoomEngine, TheFrameStaysInsideTheRecording) {
    EXPECT_EQ(target(0.98, 0.01), (RelativeRect{0.5, 0, 0.5, 0.5}));
    EXPECT_EQ(target(0.01, 0.99), (RelativeRect{0, 0.5, 0.5, 0.5}));
}

TEST(ZoomEngine, TheFactorIsBounded) {
    EXPECT_EQ(target(0.3, 0.9, 1), RelativeRect{});
    EXPECT_EQ(target(0.3, 0.9, 0.5), RelativeRect{});
    EXPECT_EQ(target(0.3, 0.9, 0), RelativeRect{});
    EXPECT_DOUBLE_EQ(target(0.5, 0.5, 30).width, 0.05);
    EXPECT_DOUBLE_EQ(target(0.5, 0.5, -1).width, 0.05);
    EXPECT_DOUBLE_EQ(target(0.5, 0.5, 4).height, 0.25);
}

TEST(ZoomEngine, EventsOutOfOrderAreSorted) {
    const auto keyframes = generate({click(20), key(5.9), click(5), click(5.5), key(5.8)});
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_DOUBLE_EQ(keyframes[0].startPTS, 4.7);
    EXPECT_DOUBLE_EQ(keyframes[0].endPTS, 7.1);
}

TEST(ZoomEngine, ClicksAtTheSameTimeKeepTheirOrder) {
    const auto keyframes = generate({click(5, 0.3), click(5, 0.7)});
    ASSERT_EQ(keyframes.size(), 2U);
    EXPECT_LT(keyframes[0].targetRect.x, keyframes[1].targetRect.x);
}

TEST(ZoomEngine, BlocksHaveIdentitiesOfTheirOwn) {
    const auto keyframes = generate({click(5), click(20)});
    EXPECT_NE(keyframes.at(0).id, keyframes.at(1).id);
}

TEST(ZoomEngine, AnyLogGivesBlocksInsideTheRecordingInOrder) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> times(0, 60);
    std::uniform_real_distribution<double> places(-0.2, 1.2);
    for (int round = 0; round < 200; ++round) {
        std::vector<InputEvent> events;
        for (int index = 0; index < 40; ++index) {
            events.push_back(click(times(random), places(random), places(random)));
            events.push_back(key(times(random)));
        }
        const auto keyframes = generate(events, 50);
        EXPECT_TRUE(std::ranges::is_sorted(keyframes, {}, &ZoomKeyframe::startPTS));
        for (const ZoomKeyframe& each : keyframes) {
            EXPECT_GE(each.startPTS, 0);
            EXPECT_LE(each.endPTS, 50);
            EXPECT_GE(each.endPTS - each.startPTS, 0.6);
            EXPECT_GE(each.targetRect.x, 0);
            EXPECT_LE(each.targetRect.y + each.targetRect.height, 1);
        }
    }
}

TEST(ZoomEngine, RetargetingChangesOnlyTheFrame) {
    const ZoomKeyframe old{Uuid::random(), 1, 2, {0.5, 0, 0.5, 0.5}, 0.1, 0.2};
    const auto keyframes = ZoomEngine::retarget({old}, 4);
    ASSERT_EQ(keyframes.size(), 1U);
    ZoomKeyframe expected = old;
    expected.targetRect = {0.625, 0.125, 0.25, 0.25};
    EXPECT_EQ(keyframes[0], expected);
    EXPECT_EQ(ZoomEngine::retarget({old}, 1).at(0).targetRect, RelativeRect{});
    EXPECT_EQ(ZoomEngine::retarget({old}, 1.6).at(0).targetRect, (RelativeRect{0.375, 0, 0.625, 0.625}));
}

}  // namespace
}  // namespace tessaloom
