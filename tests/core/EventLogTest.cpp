// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/EventLog.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/DecodeError.h"

namespace tessaloom {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

EventLog fullLog() {
    EventLog log;
    log.version = 3;
    log.streamStartHostTime = 18446744073709551615U;
    log.captureRect = {-1280.5, 25, 1920, 1080, 1.25};
    log.webcamStartOffset = -0.125;
    log.micStartOffset = 0.1;
    log.cursorSamples = {{0, 0.1, 0.2}, {1.0 / 120, 1.0 / 3, 2.0 / 3}};
    log.events = {{0.5, InputEvent::EventType::leftClick, RelativePoint{0.25, 0.75}, std::nullopt},
                  {1.5, InputEvent::EventType::keyDown, std::nullopt, "⌃⇧\"\\\n"},
                  {2.5, InputEvent::EventType::scroll, std::nullopt, std::nullopt}};
    return log;
}

TEST(EventLog, AnEmptyObjectIsTheEmptyLog) {
    EXPECT_EQ(decodeEventLog("{}"), EventLog{});
    EXPECT_EQ(EventLog{}.version, 1);
    EXPECT_EQ(EventLog{}.captureRect, (CaptureRect{0, 0, 0, 0, 2.0}));
}

TEST(EventLog, SurvivesTheWayToTheFileAndBack) {
    EXPECT_EQ(decodeEventLog(encode(fullLog())), fullLog());
}

TEST(EventLog, IsWrittenWithSortedKeysAndTwoSpaces) {
    EventLog log;
    log.streamStartHostTime = 18446744073709551615U;
    log.events = {{0.1, InputEvent::EventType::doubleClick, RelativePoint{0.25, 1}, std::nullopt}};
    EXPECT_EQ(encode(log), R"({
  "captureRect": {
    "displayScaleFactor": 2,
    "height": 0,
    "width": 0,
    "x": 0,
    "y": 0
  },
  "cursorSamples": [],
  "events": [
    {
      "location": {
        "x": 0.25,
        "y": 1
      },
      "pts": 0.1,
      "type": "doubleClick"
    }
  ],
  "micStartOffset": 0,
  "streamStartHostTime": 18446744073709551615,
  "version": 1,
  "webcamStartOffset": 0
})");
}

TEST(EventLog, WhatIsNoJsonObjectIsRefused) {
    for (const char* text : {"", "[]", "null", "{", "{\"version\": }", "{} {}", "events", "\"{}\""})
        EXPECT_THROW(decodeEventLog(text), DecodeError) << text;
}

TEST(EventLog, DeepNestingCostsNoStack) {
    const std::string deep(2'000'000, '[');
    EXPECT_THROW(decodeEventLog("{\"events\":" + deep), DecodeError);
    const std::string closed = deep + std::string(deep.size(), ']');
    EXPECT_EQ(decodeEventLog("{\"events\":" + closed + ",\"version\":2}").version, 2);
}

TEST(EventLog, AListOfTheWrongTypeCostsThatListOnly) {
    const EventLog log = decodeEventLog(
        R"({"events": "none", "micStartOffset": 0.5, "cursorSamples": [{"pts": 1, "x": 0.5, "y": 0.25}]})");
    EXPECT_TRUE(log.events.empty());
    EXPECT_EQ(log.micStartOffset, 0.5);
    EXPECT_EQ(log.cursorSamples, (std::vector<CursorSample>{{1, 0.5, 0.25}}));
}

TEST(EventLog, ABadEventIsLostAndItsNeighboursStay) {
    const EventLog log = decodeEventLog(R"({"events": [
        {"pts": 1, "type": "leftClick"}, {"pts": 2, "type": "wink"}, {"pts": 3}, {"type": "scroll"}, 7, null,
        [], {"pts": "4", "type": "scroll"}, {"pts": 5, "type": "rightClick"}]})");
    ASSERT_EQ(log.events.size(), 2U);
    EXPECT_EQ(log.events[0].pts, 1);
    EXPECT_EQ(log.events[1].type, InputEvent::EventType::rightClick);
}

TEST(EventLog, AnUnreadableLocationOrLabelLeavesTheEventWithoutIt) {
    const EventLog log = decodeEventLog(R"({"events": [
        {"pts": 1, "type": "leftClick", "location": "here", "keyLabel": 5},
        {"pts": 2, "type": "leftClick", "location": null, "keyLabel": null},
        {"pts": 3, "type": "leftClick", "location": {"x": 0.1}}]})");
    ASSERT_EQ(log.events.size(), 3U);
    EXPECT_FALSE(log.events[0].location || log.events[0].keyLabel);
    EXPECT_FALSE(log.events[1].location || log.events[1].keyLabel);
    EXPECT_EQ(log.events[2].location, (RelativePoint{0.1, 0.5}));
}

TEST(EventLog, ASampleNeedsItsTimeOnly) {
    const EventLog log = decodeEventLog(R"({"cursorSamples": [{"pts": 2, "y": 0.5}, {"x": 1, "y": 1}]})");
    EXPECT_EQ(log.cursorSamples, (std::vector<CursorSample>{{2, 0, 0.5}}));
}

TEST(EventLog, EachSideOfTheCapturedAreaIsReadAlone) {
    const EventLog log =
        decodeEventLog(R"({"captureRect": {"x": "left", "width": 800, "displayScaleFactor": []}})");
    EXPECT_EQ(log.captureRect, (CaptureRect{0, 0, 800, 0, 2.0}));
}

TEST(EventLog, IntegersTakeAnyIntegralNumberInRange) {
    struct Case {
        const char* text;
        std::uint64_t hostTime;
        std::int64_t version;
    };
    const Case cases[] = {
        {"5", 5, 5},
        {"5.0", 5, 5},
        {"5e1", 50, 50},
        {"5.5", 0, 1},
        {"-1", 0, -1},
        {"true", 0, 1},
        {"\"5\"", 0, 1},
        {"2147483648", 2147483648U, 2147483648},
        {"-9223372036854775808", 0, std::numeric_limits<std::int64_t>::min()},
        {"9223372036854775808", 9223372036854775808U, 1},
        {"18446744073709551615", 18446744073709551615U, 1},
        {"18446744073709551616", 0, 1},
        {"1e300", 0, 1},
    };
    for (const Case& each : cases) {
        const std::string number = each.text;
        const EventLog log =
            decodeEventLog("{\"version\":" + number + ",\"streamStartHostTime\":" + number + "}");
        EXPECT_EQ(log.streamStartHostTime, each.hostTime) << number;
        EXPECT_EQ(log.version, each.version) << number;
    }
}

TEST(EventLog, NumbersThatAreNotFiniteNeverReachTheFile) {
    EventLog log;
    log.micStartOffset = notANumber;
    log.captureRect.width = std::numeric_limits<double>::infinity();
    log.cursorSamples = {{notANumber, 0, 0}, {1, notANumber, 0.5}};
    log.events = {{notANumber, InputEvent::EventType::scroll, std::nullopt, std::nullopt},
                  {2, InputEvent::EventType::leftClick, RelativePoint{notANumber, 0.25}, std::nullopt}};
    const EventLog stored = decodeEventLog(encode(log));
    EXPECT_EQ(stored.micStartOffset, 0);
    EXPECT_EQ(stored.captureRect.width, 0);
    EXPECT_EQ(stored.cursorSamples, (std::vector<CursorSample>{{1, 0, 0.5}}));
    ASSERT_EQ(stored.events.size(), 1U);
    EXPECT_EQ(stored.events[0].location, (RelativePoint{0.5, 0.25}));
    EXPECT_EQ(encode(log).find("nan"), std::string::npos);
    EXPECT_EQ(encode(log).find("inf"), std::string::npos);
}

TEST(EventLog, ItsLengthIsThatOfThePathElseOfTheEventsElseNothing) {
    EventLog log;
    EXPECT_EQ(logDuration(log), 0);
    log.events = {{7, InputEvent::EventType::scroll, std::nullopt, std::nullopt}};
    EXPECT_EQ(logDuration(log), 7);
    log.cursorSamples = {{1, 0, 0}, {4.5, 0, 0}};
    EXPECT_EQ(logDuration(log), 4.5);
}

}  // namespace
}  // namespace tessaloom
