// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/EventRetimer.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using Type = InputEvent::EventType;
using Kind = RawInput::Kind;

constexpr double origin = 1000.0;
constexpr Rect frame{0, 0, 1000, 500};

RawEvent press(double host, Kind kind = Kind::leftButton, std::string label = {}) {
    return {host, kind, std::move(label)};
}

TEST(EventRetimer, AClickIsWhereThePointerWasAtItsMoment) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{1.0, 0.2, 0.4}, {1.1, 0.4, 0.6}};
    const auto events = retimer.retime({press(origin + 1.05)}, path);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_NEAR(events[0].pts, 1.05, 1e-9);
    ASSERT_TRUE(events[0].location);
    EXPECT_NEAR(events[0].location->x, 0.3, 1e-9);
    EXPECT_NEAR(events[0].location->y, 0.5, 1e-9);
}

TEST(EventRetimer, EventsLaterThanThePathWaitForIt) {
    EventRetimer retimer(origin, frame);
    EXPECT_TRUE(retimer.retime({press(origin + 2.0)}, std::vector<CursorSample>{{1.9, 0.1, 0.1}}).empty());
    const auto events = retimer.retime({}, std::vector<CursorSample>{{2.1, 0.3, 0.1}});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_NEAR(events[0].location->x, 0.2, 1e-9);  // between the sample before and the one after
}

TEST(EventRetimer, WhatStillWaitsAtTheEndGetsThePathsLastPlace) {
    EventRetimer retimer(origin, frame);
    retimer.retime({press(origin + 2.0)}, std::vector<CursorSample>{{1.9, 0.1, 0.7}});
    const auto events = retimer.finish();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].location, (RelativePoint{0.1, 0.7}));
    EXPECT_TRUE(retimer.finish().empty());
}

TEST(EventRetimer, InputBeforeTheFirstFrameDoesNotExist) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{0.0, 0.5, 0.5}, {1.0, 0.5, 0.5}};
    const auto events = retimer.retime({press(origin - 0.001), press(origin), press(origin + 0.5)}, path);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].pts, 0.0);
}

TEST(EventRetimer, KeysHaveALabelAndNoPlace) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{0.0, 0.5, 0.5}, {2.0, 0.5, 0.5}};
    const auto events =
        retimer.retime({press(origin + 1, Kind::key, "⌃S"), press(origin + 1.1, Kind::key)}, path);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].type, Type::keyDown);
    EXPECT_EQ(events[0].keyLabel, "⌃S");
    EXPECT_FALSE(events[0].location);
    EXPECT_EQ(events[1].keyLabel, "");
}

TEST(EventRetimer, SecondAndThirdPressesInARowAreDoubleClicks) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{0.0, 0.5, 0.5}, {3.0, 0.5, 0.5}};
    const auto events =
        retimer.retime({press(origin + 1.0), press(origin + 1.2), press(origin + 1.4), press(origin + 2.5),
                        press(origin + 2.6, Kind::rightButton), press(origin + 2.7, Kind::scroll)},
                       path);
    std::vector<Type> types;
    for (const InputEvent& event : events)
        types.push_back(event.type);
    EXPECT_EQ(types, (std::vector{Type::leftClick, Type::doubleClick, Type::doubleClick, Type::leftClick,
                                  Type::rightClick, Type::scroll}));
}

TEST(EventRetimer, PressesOutsideTheAreaStickToItsEdgeButCountWhereTheyWere) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{1.0, 1.5, 0.2}, {1.1, 1.5, 0.2}, {1.2, 1.9, 0.2}, {1.3, 1.9, 0.2}};
    const auto events =
        retimer.retime({press(origin + 1.05), press(origin + 1.25), press(origin + 1.3)}, path);
    ASSERT_EQ(events.size(), 3U);
    for (const InputEvent& event : events) {
        EXPECT_NEAR(event.location->x, 1, 1e-8);
        EXPECT_LT(event.location->x, 1);
    }
    EXPECT_EQ(events[1].type, Type::leftClick);
    EXPECT_EQ(events[2].type, Type::doubleClick);
}

TEST(EventRetimer, DoubleClicksAreAsQuickAsTheUserHasSet) {
    EventRetimer retimer(origin, frame, {.longestPauseSeconds = 0.8});
    const std::vector<CursorSample> path{{0.0, 0.5, 0.5}, {3.0, 0.5, 0.5}};
    const auto events = retimer.retime({press(origin + 1.0), press(origin + 1.7)}, path);
    EXPECT_EQ(events.at(1).type, Type::doubleClick);
}

TEST(EventRetimer, PressesInARowAreFollowedAcrossCalls) {
    EventRetimer retimer(origin, frame);
    retimer.retime({press(origin + 1.0)}, std::vector<CursorSample>{{0.0, 0.5, 0.5}, {1.1, 0.5, 0.5}});
    const auto events = retimer.retime({press(origin + 1.3)}, std::vector<CursorSample>{{1.4, 0.5, 0.5}});
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].type, Type::doubleClick);
}

TEST(EventRetimer, EventsComeOutInTimeOrder) {
    EventRetimer retimer(origin, frame);
    const std::vector<CursorSample> path{{0.0, 0.5, 0.5}, {2.0, 0.5, 0.5}};
    const auto events =
        retimer.retime({press(origin + 1.0, Kind::scroll), press(origin + 0.5, Kind::key)}, path);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].type, Type::keyDown);
}

TEST(EventRetimer, WithoutAnyPathEventsHaveNoPlace) {
    EventRetimer retimer(origin, frame);
    EXPECT_TRUE(retimer.retime({press(origin + 1.0)}, {}).empty());
    const auto events = retimer.finish();
    ASSERT_EQ(events.size(), 1U);
    EXPECT_FALSE(events[0].location);
}

}  // namespace
}  // namespace tessaloom
