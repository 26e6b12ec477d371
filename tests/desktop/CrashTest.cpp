// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <thread>

#include "base/HostClock.h"
#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/TestWindow.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr int width = 640;
constexpr int height = 480;

int run(const std::vector<std::string>& arguments, const Environment& environment) {
    std::vector<std::string> command{TESSALOOM_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess program(command, environment);
    const int status = program.waitForExit(60s).value_or(-1);
    EXPECT_EQ(status, 0) << program.errors();
    return status;
}

/// Moves, clicks, presses a shortcut and paints, all the while, until `seconds` have passed.
void workFor(double seconds, XInjector& injector, TestWindow& window) {
    const double end = HostClock::seconds() + seconds;
    const auto control = injector.keyboard().forSymbolName("Control_L");
    ASSERT_TRUE(control);
    for (std::uint32_t step = 0; HostClock::seconds() < end; ++step) {
        injector.moveTo({100 + static_cast<int>(step * 7 % 400), 100 + static_cast<int>(step * 5 % 300)});
        window.fill({0, 0, 200, 150}, step * 0x030507U);
        if (step % 30 == 10) injector.click();
        if (step % 30 == 20) {
            injector.pressKey(control->keycode);
            injector.tapKey("s");
            injector.releaseKey(control->keycode);
        }
        std::this_thread::sleep_for(15ms);
    }
}

class KilledAfter : public ::testing::TestWithParam<double> {};

TEST_P(KilledAfter, TheRecordingLosesAtMostASecond) {
    const VirtualDesktop desktop(width, height);
    XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {50, 50, 200, 150}, .rgb = 0x2040C0});
    DesktopRecording recording(desktop);
    workFor(GetParam(), injector, window);
    recording.program().signal(SIGKILL);
    ASSERT_EQ(recording.program().waitForExit(5s), 128 + SIGKILL);

    const TakeBundle bundle = recording.bundle();
    const double survived = MovieReader::scanDuration(bundle.file(TakeBundle::screenFile));
    EXPECT_GE(survived, GetParam() - 1.0);
    const auto exported = recording.library() / "export.mp4";
    ASSERT_EQ(run({"export", bundle.url.string(), "-o", exported.string(), "--resolution", "720p"},
                  recording.environment()),
              0);

    // Opening it has completed the take.
    EXPECT_FALSE(std::filesystem::exists(bundle.file(TakeBundle::journalFile)));
    const EventLog log = bundle.readLog();
    EXPECT_GE(logDuration(log), GetParam() - 1.0);
    EXPECT_EQ(log.captureRect, (CaptureRect{0, 0, width, height, 1}));
    EXPECT_NEAR(MovieReader::scanDuration(exported), logDuration(log), 0.05);
    if (GetParam() > 2) {
        const auto isClick = [](const InputEvent& event) { return event.isClick(); };
        EXPECT_GE(std::ranges::count_if(log.events, isClick), 1);
        EXPECT_FALSE(bundle.readEdit().zoomKeyframes.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Seconds, KilledAfter, ::testing::Values(0.3, 1.1, 2.4, 4.7),
                         [](const auto& seconds) {
                             return std::to_string(static_cast<int>(seconds.param * 1000)) + "ms";
                         });

TEST(Crash, ARunningRecordingIsNotTakenForADeadOne) {
    const VirtualDesktop desktop(width, height);
    DesktopRecording recording(desktop);
    std::this_thread::sleep_for(1200ms);
    const TakeBundle running = recording.bundle();
    run({"frame", running.url.string(), "--at", "0.1", "-o", (recording.library() / "still.png").string()},
        recording.environment());
    EXPECT_TRUE(std::filesystem::exists(running.file(TakeBundle::journalFile)));
    const TakeBundle finished = recording.stop();
    EXPECT_FALSE(std::filesystem::exists(finished.file(TakeBundle::journalFile)));
    EXPECT_GT(finished.readLog().cursorSamples.size(), 100U);
}

TEST(Crash, ALostXServerEndsInAFinishedBundle) {
    std::optional<VirtualDesktop> desktop(std::in_place, width, height);
    DesktopRecording recording(*desktop);
    std::this_thread::sleep_for(1s);
    desktop.reset();
    const TakeBundle bundle = recording.waitForEnd();
    EXPECT_NE(recording.program().errors().find("The connection to the X server was lost."),
              std::string::npos);
    EXPECT_GT(logDuration(bundle.readLog()), 0.7);
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.7);
}

}  // namespace
}  // namespace tessaloom::test
