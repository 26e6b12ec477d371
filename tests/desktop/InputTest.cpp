// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <thread>

#include "base/HostClock.h"
#include "desktop/DesktopRecording.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;
using Type = InputEvent::EventType;

constexpr int width = 800;
constexpr int height = 600;

class Input : public ::testing::Test {
  protected:
    const VirtualDesktop desktop_{width, height};
    XInjector injector_{desktop_.displayName()};

    void tapWith(const char* modifier, const char* key) {
        const auto held = injector_.keyboard().forSymbolName(modifier);
        ASSERT_TRUE(held);
        injector_.pressKey(held->keycode);
        injector_.tapKey(key);
        injector_.releaseKey(held->keycode);
    }
};

std::vector<InputEvent> eventsOf(const TakeBundle& bundle) {
    return bundle.readLog().events;
}

std::vector<std::string> labelsOf(const TakeBundle& bundle) {
    std::vector<std::string> labels;
    for (const InputEvent& event : eventsOf(bundle)) {
        if (event.type == Type::keyDown) labels.push_back(event.keyLabel.value_or("absent"));
    }
    return labels;
}

TEST_F(Input, ClicksAreLoggedWhereAndWhenTheyWereMade) {
    injector_.moveTo({100, 100});
    DesktopRecording recording(desktop_);
    injector_.moveTo({200, 450});
    std::this_thread::sleep_for(100ms);
    const double firstClick = HostClock::seconds();
    injector_.click();
    std::this_thread::sleep_for(600ms);
    injector_.moveTo({600, 150});
    std::this_thread::sleep_for(100ms);
    const double secondClick = HostClock::seconds();
    injector_.click(3);
    std::this_thread::sleep_for(100ms);
    const auto events = eventsOf(recording.stop());

    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].type, Type::leftClick);
    EXPECT_EQ(events[1].type, Type::rightClick);
    ASSERT_TRUE(events[0].location && events[1].location);
    EXPECT_NEAR(events[0].location->x * width, 200, 0.5);
    EXPECT_NEAR(events[0].location->y * height, 450, 0.5);
    EXPECT_NEAR(events[1].location->x * width, 600, 0.5);
    EXPECT_NEAR(events[1].location->y * height, 150, 0.5);
    EXPECT_NEAR(events[1].pts - events[0].pts, secondClick - firstClick, 0.01);
}

TEST_F(Input, AClickOutsideTheRecordedAreaSticksToItsEdge) {
    DesktopRecording recording(desktop_, {"--area", "100,100,200,200"});
    injector_.moveTo({500, 200});
    std::this_thread::sleep_for(100ms);
    injector_.click();
    std::this_thread::sleep_for(600ms);
    injector_.moveTo({150, 20});
    std::this_thread::sleep_for(100ms);
    injector_.click();
    std::this_thread::sleep_for(100ms);
    const auto events = eventsOf(recording.stop());
    ASSERT_EQ(events.size(), 2U);
    ASSERT_TRUE(events[0].location && events[1].location);
    EXPECT_NEAR(events[0].location->x, 1, 1e-6);
    EXPECT_NEAR(events[0].location->y, 0.5, 1e-6);
    EXPECT_NEAR(events[1].location->x, 0.25, 1e-6);
    EXPECT_NEAR(events[1].location->y, 0, 1e-6);
}

TEST_F(Input, PressesInARowAreDoubleClicksAndNotchesAreScrolls) {
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(50ms);
    for (int press = 0; press < 3; ++press)
        injector_.click();
    for (const int wheelButton : {4, 5, 6, 7})
        injector_.click(wheelButton);
    injector_.click(2);
    std::this_thread::sleep_for(100ms);
    std::vector<Type> types;
    for (const InputEvent& event : eventsOf(recording.stop()))
        types.push_back(event.type);
    EXPECT_EQ(types, (std::vector{Type::leftClick, Type::doubleClick, Type::doubleClick, Type::scroll,
                                  Type::scroll, Type::scroll, Type::scroll}));
}

TEST_F(Input, ShortcutsHaveLabelsAndTypingHasNone) {
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(50ms);
    tapWith("Control_L", "s");
    tapWith("Super_L", "4");
    tapWith("Shift_L", "a");
    injector_.tapKey("b");
    injector_.tapKey("Return");
    tapWith("Alt_L", "Tab");
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(labelsOf(recording.stop()), (std::vector<std::string>{"⌃S", "⌘4", "", "", "↩", "⌥⇥"}));
}

TEST_F(Input, LabelsFollowTheKeysPlaceNotTheLayout) {
    ASSERT_TRUE(setKeyboardLayout(desktop_.environment(), "de"));
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(50ms);
    tapWith("Control_L", "z");  // where the ANSI keyboard has its Y
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(labelsOf(recording.stop()), (std::vector<std::string>{"⌃Y"}));
}

TEST_F(Input, AHeldKeyRepeatsAtTheServersRate) {
    ChildProcess xset({"xset", "r", "rate", "200", "20"}, desktop_.environment());
    ASSERT_EQ(xset.waitForExit(5s), 0) << xset.errors();
    DesktopRecording recording(desktop_);
    std::this_thread::sleep_for(50ms);
    const auto left = injector_.keyboard().forSymbolName("Left");
    ASSERT_TRUE(left);
    injector_.pressKey(left->keycode);
    std::this_thread::sleep_for(600ms);
    injector_.releaseKey(left->keycode);
    std::this_thread::sleep_for(100ms);
    const auto events = eventsOf(recording.stop());
    // The press itself, then repeats from 0.2 s on, 50 ms apart, until about 0.6 s.
    ASSERT_GE(events.size(), 8U);
    EXPECT_LE(events.size(), 11U);
    EXPECT_NEAR(events[1].pts - events[0].pts, 0.2, 0.002);
    EXPECT_NEAR(events[2].pts - events[1].pts, 0.05, 0.002);
    EXPECT_EQ(events.back().keyLabel, "←");
}

TEST_F(Input, ThePointersPathIsSampledAHundredAndTwentyTimesASecond) {
    DesktopRecording recording(desktop_, {"--duration", "1.5"});
    const auto samples = recording.waitForEnd().readLog().cursorSamples;
    EXPECT_GT(samples.size(), 1.5 * 120 * 0.8);
    EXPECT_LT(samples.size(), 2.0 * 120);
}

}  // namespace
}  // namespace tessaloom::test
