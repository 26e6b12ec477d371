// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11InputSource.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <chrono>
#include <csignal>
#include <thread>

#include "base/HostClock.h"
#include "capture/InputEventTap.h"
#include "platform/x11/X11PointerSource.h"
#include "support/VirtualDesktop.h"
#include "support/XInjector.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using Kind = RawInput::Kind;
using Labels = std::vector<std::string>;

class X11Input : public ::testing::Test {
  protected:
    X11Input() { qputenv("DISPLAY", desktop.displayName().c_str()); }

    void SetUp() override {
        tap.emplace(std::make_unique<X11InputSource>(X11Connection::open()));
        ASSERT_TRUE(tap->start());
    }

    /// What was reported up to now: a right click marks the end of it.
    std::vector<RawEvent> eventsSoFar() {
        injector.click(3);
        std::vector<RawEvent> events;
        for (int tries = 0; tries < 500; ++tries, std::this_thread::sleep_for(10ms)) {
            std::ranges::move(tap->takeEvents(), std::back_inserter(events));
            if (!events.empty() && events.back().kind == Kind::rightButton) {
                events.pop_back();
                return events;
            }
        }
        ADD_FAILURE() << "The right click was not reported.";
        return events;
    }
    Labels labelsSoFar() {
        Labels labels;
        for (const RawEvent& event : eventsSoFar())
            labels.push_back(event.label);
        return labels;
    }

    xcb_keycode_t key(const char* position) const { return *injector.keyboard().forPosition(position); }
    void tapKey(const char* position) { injector.tapKey(key(position)); }
    void tapWith(const char* modifier, const char* position) {
        injector.pressKey(key(modifier));
        tapKey(position);
        injector.releaseKey(key(modifier));
    }
    bool run(const std::vector<std::string>& command) {
        test::ChildProcess child(command, desktop.environment());
        return child.waitForExit(10s) == 0;
    }

    test::VirtualDesktop desktop{320, 240};
    test::XInjector injector{desktop.displayName()};
    std::optional<InputEventTap> tap;
};

TEST_F(X11Input, ButtonsAndTheWheelAreReportedAtTheirTimes) {
    const double before = HostClock::seconds();
    injector.click(1);
    injector.click(2);
    injector.click(4);
    injector.click(7);
    const auto events = eventsSoFar();
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[0].kind, Kind::leftButton);
    EXPECT_EQ(events[1].kind, Kind::scroll);
    EXPECT_EQ(events[2].kind, Kind::scroll);
    EXPECT_NEAR(events[0].host, before, 0.5);
    EXPECT_GE(events[0].host, before - 0.002);
}

TEST_F(X11Input, LeftHandedUsersClickWithTheOtherButton) {
    ASSERT_TRUE(run({"xmodmap", "-e", "pointer = 3 2 1"}));
    injector.click(3);
    injector.click(1);  // the right button now
    std::vector<RawEvent> events;
    for (int tries = 0; tries < 500 && events.size() < 2; ++tries, std::this_thread::sleep_for(10ms))
        std::ranges::move(tap->takeEvents(), std::back_inserter(events));
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].kind, Kind::leftButton);
    EXPECT_EQ(events[1].kind, Kind::rightButton);
}

TEST_F(X11Input, TypingLeavesNoLabels) {
    tapKey("AD01");
    tapWith("LFSH", "AC01");
    tapKey("CAPS");
    tapKey("AE02");
    tapKey("CAPS");
    EXPECT_EQ(labelsSoFar(), (Labels{"", "", ""}));
}

TEST_F(X11Input, ShortcutsAreLabelled) {
    tapWith("LCTL", "AB03");
    tapWith("LALT", "TAB");
    tapWith("LWIN", "AE04");
    injector.pressKey(key("LWIN"));
    tapWith("LFSH", "AE04");
    injector.releaseKey(key("LWIN"));
    tapKey("RTRN");
    tapKey("FK05");
    tapKey("AB03");
    EXPECT_EQ(labelsSoFar(), (Labels{"⌃C", "⌥⇥", "⌘4", "⇧⌘4", "↩", "F5", ""}));
}

struct AltGrKey {
    const char* layout;
    const char* option;
    const char* key;
};

class X11AltGr : public X11Input, public ::testing::WithParamInterface<AltGrKey> {};

TEST_P(X11AltGr, TypesCharactersThatLeaveNoLabel) {
    ASSERT_TRUE(run({"setxkbmap", "-layout", GetParam().layout, "-option", GetParam().option}));
    tapWith(GetParam().key, "AD01");
    tapWith("LCTL", "AD01");
    EXPECT_EQ(labelsSoFar(), (Labels{"", "⌃Q"}));
}

INSTANTIATE_TEST_SUITE_P(Layouts, X11AltGr,
                         ::testing::Values(AltGrKey{"de", "", "RALT"}, AltGrKey{"pl", "", "RALT"},
                                           AltGrKey{"de", "lv3:lalt_switch", "LALT"},
                                           AltGrKey{"us", "lv3:alt_switch", "RALT"},
                                           AltGrKey{"de", "lv3:win_switch", "LWIN"}));

TEST_F(X11Input, AltGrOnTheModifierOfAltIsStillAltGr) {
    ASSERT_TRUE(test::setKeyboardLayout(desktop.environment(), "de"));
    ASSERT_TRUE(run({"xmodmap", "-e", "clear mod5", "-e", "add mod1 = ISO_Level3_Shift"}));
    tapWith("RALT", "AD01");
    tapWith("LCTL", "AD01");
    EXPECT_EQ(labelsSoFar(), (Labels{"", "⌃Q"}));
}

TEST_F(X11Input, KeysKeepTheirLabelsOnEveryLayout) {
    ASSERT_TRUE(test::setKeyboardLayout(desktop.environment(), "us,de"));
    tapWith("LCTL", "AB01");
    ASSERT_TRUE(test::setKeyboardLayout(desktop.environment(), "de"));
    tapWith("LCTL", "AB01");
    EXPECT_EQ(labelsSoFar(), (Labels{"⌃Z", "⌃Z"}));
}

TEST_F(X11Input, ModifiersHeldWhileTheLayoutChangesStayHeld) {
    injector.pressKey(key("LCTL"));
    ASSERT_TRUE(run({"xmodmap", "-e", "keycode 248 = eacute"}));
    tapKey("AD01");
    injector.releaseKey(key("LCTL"));
    tapKey("AD01");
    EXPECT_EQ(labelsSoFar(), (Labels{"⌃Q", ""}));
}

TEST_F(X11Input, AHeldKeyRepeatsAsTheUserHasSet) {
    ASSERT_TRUE(run({"xset", "r", "rate", "100", "20"}));
    injector.pressKey(key("BKSP"));
    std::this_thread::sleep_for(400ms);
    injector.releaseKey(key("BKSP"));
    const auto events = eventsSoFar();
    ASSERT_GT(events.size(), 2U);
    EXPECT_NEAR(events[1].host - events[0].host, 0.1, 1e-6);
    EXPECT_NEAR(events[2].host - events[1].host, 0.05, 1e-6);
    EXPECT_EQ(events[2].label, "⌫");
}

TEST_F(X11Input, WithRepetitionSwitchedOffAHeldKeyIsOnePress) {
    ASSERT_TRUE(run({"xset", "r", "rate", "100", "20"}));
    ASSERT_TRUE(run({"xset", "r", "off"}));
    injector.pressKey(key("BKSP"));
    std::this_thread::sleep_for(300ms);
    injector.releaseKey(key("BKSP"));
    EXPECT_EQ(labelsSoFar(), (Labels{"⌫"}));
}

TEST_F(X11Input, AHungServerCannotHoldUpTheStop) {
    X11PointerSource pointer(X11Connection::open(), 1.0);
    ASSERT_TRUE(pointer.location());
    desktop.server().signal(SIGSTOP);
    std::jthread asking([&] { EXPECT_FALSE(pointer.location()); });
    std::this_thread::sleep_for(50ms);
    const double before = HostClock::seconds();
    tap->stop();
    pointer.stop();
    asking.join();
    EXPECT_LT(HostClock::seconds() - before, 5);
    desktop.server().signal(SIGCONT);
}

}  // namespace
}  // namespace tessaloom
