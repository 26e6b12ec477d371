// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "support/TestWindow.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t green = 0x20A040;
constexpr std::uint32_t red = 0xC02020;

/// A drag on a desktop of 640 by 480 pixels, and the pixels that are to be recorded.
struct Drag {
    const char* name;
    int dotsPerInch = 96;
    bool hasTwoMonitors = false;
    ScreenPoint from;
    ScreenPoint to;
    PixelRect recorded;
};

std::ostream& operator<<(std::ostream& stream, const Drag& drag) {
    return stream << drag.name;
}

class RegionOnScreens : public ::testing::TestWithParam<Drag> {
  protected:
    RegionOnScreens() {
        if (GetParam().dotsPerInch != 96) setDotsPerInch(desktop, GetParam().dotsPerInch);
        if (GetParam().hasTwoMonitors) splitScreen(desktop);
        program.emplace(
            std::vector<std::string>{TESSALOOM_PROGRAM, "record", "--area", "select", "--countdown", "0",
                                     "--duration", "0.4", "--no-microphone", "--no-system-audio"},
            programEnvironment(desktop.environment(), library.path()));
    }
    /// Whether the view for the selection covers the whole desktop.
    bool isDimmed() const {
        const std::array corners{ScreenPoint{3, 3}, ScreenPoint{636, 3}, ScreenPoint{3, 476},
                                 ScreenPoint{636, 476}};
        return std::ranges::none_of(
            corners, [&](ScreenPoint at) { return screenColorAt(injector, at.x, at.y) == green; });
    }
    void drag() {
        const auto [from, to] = std::pair(GetParam().from, GetParam().to);
        injector.moveTo(from);
        injector.press(1);
        injector.moveTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        injector.moveTo(to);
        injector.release(1);
    }

    const VirtualDesktop desktop{640, 480};
    XInjector injector{desktop.displayName()};
    TestWindow background{injector.connection(), {.rect = {0, 0, 640, 480}, .rgb = green}};
    /// What is recorded shows this, and only this.
    TestWindow mark{injector.connection(), {.rect = GetParam().recorded, .rgb = red}};
    const TemporaryFolder library;
    std::optional<ChildProcess> program;
};

TEST_P(RegionOnScreens, ThePixelsThatWereDraggedOutAreRecorded) {
    ASSERT_TRUE(waitUntil([&] { return isDimmed(); })) << program->errors();
    const PixelRect expected = GetParam().recorded;
    const std::uint32_t still =
        screenColorAt(injector, expected.x + expected.width / 2, expected.y + expected.height / 2);
    EXPECT_GT(still >> 16 & 0xFFU, still >> 8 & 0xFFU) << "the view doesn't show what it covers";
    drag();
    ASSERT_EQ(program->waitForExit(15s), 0) << program->errors();
    const std::string output = program->output();
    const TakeBundle bundle{output.substr(0, output.find('\n'))};

    const CaptureRect area = bundle.readLog().captureRect;
    const double scale = GetParam().dotsPerInch / 96.0;
    EXPECT_NEAR(area.x * scale, expected.x, 1e-6);
    EXPECT_NEAR(area.y * scale, expected.y, 1e-6);
    EXPECT_NEAR(area.width * scale, expected.width, 1e-6);
    EXPECT_NEAR(area.height * scale, expected.height, 1e-6);
    EXPECT_EQ(area.displayScaleFactor, scale);
    const BgraImage picture = recordedPicture(bundle, 0);
    ASSERT_EQ(picture.width(), expected.width);
    ASSERT_EQ(picture.height(), expected.height);
    for (const int x : {0, expected.width / 2, expected.width - 1}) {
        for (const int y : {0, expected.height / 2, expected.height - 1})
            EXPECT_TRUE(isNearly(colorAt(picture, x, y), red)) << x << ' ' << y;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Screens, RegionOnScreens,
    ::testing::Values(
        Drag{"scaledTwofold", 192, false, {100, 80}, {300, 200}, {100, 80, 200, 120}},
        Drag{"scaledByOneAndAHalf", 144, false, {101, 81}, {301, 201}, {101, 81, 200, 120}},
        Drag{"onTheRightMonitor", 96, true, {400, 100}, {600, 200}, {400, 100, 200, 100}},
        Drag{"onTheRightMonitorScaled", 192, true, {400, 100}, {600, 200}, {400, 100, 200, 100}},
        Drag{"onTheLeftMonitorScaled", 192, true, {300, 200}, {100, 100}, {100, 100, 200, 100}},
        Drag{"mostlyOnTheRightMonitor", 96, true, {250, 100}, {450, 200}, {320, 100, 130, 100}},
        Drag{"mostlyOnTheRightMonitorScaled", 192, true, {450, 200}, {250, 100}, {320, 100, 130, 100}}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tessaloom::test
