// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <csignal>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/TestWindow.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t green = 0x20A040;

/// `tessaloom record --area select` before a green background.
class RegionOnScreen : public ::testing::Test {
  protected:
    RegionOnScreen() {
        EXPECT_TRUE(waitUntil([&] { return colorAtCorner() != green; })) << program.errors();
    }
    std::uint32_t colorAtCorner() const { return screenColorAt(injector, 5, 5); }
    void drag(ScreenPoint from, ScreenPoint to) {
        injector.moveTo(from);
        injector.press(1);
        injector.moveTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        injector.moveTo(to);
    }
    int exitStatus() { return program.waitForExit(10s).value_or(-1); }

    const VirtualDesktop desktop{640, 480};
    XInjector injector{desktop.displayName()};
    TestWindow background{injector.connection(), {.rect = {0, 0, 640, 480}, .rgb = green}};
    const TemporaryFolder library;
    ChildProcess program{{TESSALOOM_PROGRAM, "record", "--area", "select", "--countdown", "0", "--duration",
                          "0.5", "--no-microphone", "--no-system-audio"},
                         programEnvironment(desktop.environment(), library.path())};
};

TEST_F(RegionOnScreen, WhatIsDraggedOutIsRecorded) {
    drag({100, 80}, {300, 200});
    injector.release(1);
    ASSERT_EQ(exitStatus(), 0) << program.errors();
    const std::string output = program.output();
    const TakeBundle bundle{output.substr(0, output.find('\n'))};
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{100, 80, 200, 120, 1}));
    EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, 0), 50, 50), green));
}

TEST_F(RegionOnScreen, TheScreenIsDimmedButForTheSelection) {
    const auto dimmed = [](std::uint32_t component) { return component * 68 / 100; };
    const std::uint32_t expected = dimmed(0x20) << 16 | dimmed(0xA0) << 8 | dimmed(0x40);
    EXPECT_TRUE(isNearly(colorAtCorner(), expected)) << std::hex << colorAtCorner();
    drag({300, 200}, {100, 80});
    EXPECT_TRUE(waitUntil([&] { return screenColorAt(injector, 200, 140) == green; }));
    EXPECT_TRUE(isNearly(screenColorAt(injector, 90, 140), expected));
    EXPECT_TRUE(isNearly(screenColorAt(injector, 310, 140), expected));
    EXPECT_TRUE(isNearly(screenColorAt(injector, 200, 70), expected));
    EXPECT_GT(screenColorAt(injector, 100, 140) & 0xFFU, 0xC0U) << "the outline";
}

TEST_F(RegionOnScreen, EscapeCancels) {
    injector.tapKey("Escape");
    EXPECT_EQ(exitStatus(), 130);
    EXPECT_EQ(program.output(), "");
    EXPECT_TRUE(isWithoutRecordings(library.path()));
    EXPECT_EQ(colorAtCorner(), green);
}

TEST_F(RegionOnScreen, AClickCancels) {
    injector.moveTo({200, 200});
    injector.click();
    EXPECT_EQ(exitStatus(), 130);
}

TEST_F(RegionOnScreen, ADragOfEightByAHundredPointsIsNone) {
    drag({200, 100}, {208, 200});
    injector.release(1);
    EXPECT_EQ(exitStatus(), 130);
}

TEST_F(RegionOnScreen, CtrlCCancels) {
    program.signal(SIGINT);
    EXPECT_EQ(exitStatus(), 130);
}

}  // namespace
}  // namespace tessaloom::test
