// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/TestWindow.h"
#include "support/XInjector.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

double durationOf(const TakeBundle& bundle) {
    return MovieReader::scanDuration(bundle.file(TakeBundle::screenFile));
}

TEST(Record, AStillScreenIsReadOnceAndItsLastFrameLastsUntilTheStop) {
    const VirtualDesktop desktop(640, 480);
    DesktopRecording recording(desktop, {"--duration", "2.5"});
    const TakeBundle bundle = recording.waitForEnd();
    const auto times = recordedTimes(bundle);
    ASSERT_EQ(times.size(), 2U);  // the first frame, and the one that carries it to the end
    EXPECT_EQ(times[0], 0.0);
    EXPECT_GT(times[1], 2.3);
    EXPECT_NEAR(durationOf(bundle), 2.5, 0.3);
}

TEST(Record, AFrameShowsWhatChangedAndWhatDidNot) {
    const VirtualDesktop desktop(640, 480);
    const XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {100, 100, 200, 200}, .rgb = 0x2040C0});
    DesktopRecording recording(desktop);
    std::this_thread::sleep_for(300ms);
    window.fill({51, 51, 31, 31}, 0xE0C020);
    std::this_thread::sleep_for(300ms);
    const TakeBundle bundle = recording.stop();

    const BgraImage before = recordedPicture(bundle, 0);
    EXPECT_TRUE(isNearly(colorAt(before, 165, 165), 0x2040C0));
    const BgraImage after = recordedPicture(bundle, durationOf(bundle));
    EXPECT_TRUE(isNearly(colorAt(after, 165, 165), 0xE0C020));
    EXPECT_TRUE(isNearly(colorAt(after, 120, 120), 0x2040C0));
    EXPECT_TRUE(isNearly(colorAt(after, 20, 20), 0x000000));
}

TEST(Record, NeverMoreThanSixtyFramesASecondAndEvenlySpacedOnes) {
    const VirtualDesktop desktop(640, 480);
    const XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {100, 100, 200, 200}, .rgb = 0x2040C0});
    DesktopRecording recording(desktop);
    for (std::uint32_t n = 0; n < 400; ++n) {
        window.fill({0, 0, 200, 200}, n * 0x010307U);
        std::this_thread::sleep_for(5ms);
    }
    const auto times = recordedTimes(recording.stop());
    ASSERT_GT(times.size(), 60U);
    for (std::size_t n = 1; n + 1 < times.size(); ++n) {
        const double interval = times[n] - times[n - 1];
        EXPECT_NEAR(interval * 60, std::round(interval * 60), 0.02) << "the grid moves no faster";
        EXPECT_GE(interval * 60, 0.98);
    }
    EXPECT_LE(static_cast<double>(times.size() - 1), 60 * (times.back() - times.front()) + 1.1)
        << "the end has one more";
}

TEST(Record, ThePointerIsNotInThePicture) {
    const VirtualDesktop desktop(640, 480);
    XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {0, 0, 640, 480}, .rgb = 0x808080});
    injector.moveTo({320, 240});
    DesktopRecording recording(desktop);
    std::this_thread::sleep_for(200ms);
    const BgraImage picture = recordedPicture(recording.stop(), 0);
    for (int y = 200; y < 280; ++y) {
        for (int x = 280; x < 360; ++x)
            ASSERT_TRUE(isNearly(colorAt(picture, x, y), 0x808080)) << x << ' ' << y;
    }
}

TEST(Record, TerminatingItFinishesTheBundleAsCtrlCDoes) {
    const VirtualDesktop desktop(640, 480);
    DesktopRecording recording(desktop);
    std::this_thread::sleep_for(500ms);
    recording.program().signal(SIGTERM);
    const TakeBundle bundle = recording.waitForEnd();
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
    EXPECT_FALSE(std::filesystem::exists(bundle.file(TakeBundle::journalFile)));
    EXPECT_NEAR(durationOf(bundle), logDuration(bundle.readLog()), 0.1);
}

TEST(Record, InterruptedDuringTheCountdownItLeavesNothing) {
    const VirtualDesktop desktop(640, 480);
    const TemporaryFolder library;
    ChildProcess program({TESSALOOM_PROGRAM, "record", "--countdown", "5"},
                         programEnvironment(desktop.environment(), library.path()));
    std::this_thread::sleep_for(700ms);
    program.signal(SIGINT);
    EXPECT_EQ(program.waitForExit(3s), 130);
    EXPECT_EQ(program.output(), "");
    EXPECT_TRUE(isWithoutRecordings(library.path()));
}

TEST(Record, TheRecordedSceneIsFaithful) {
    const VirtualDesktop desktop(1280, 720);
    ChildProcess scene({DEMO_SCENE_PROGRAM, "--full-screen"}, desktop.environment());
    ASSERT_TRUE(scene.waitForOutput("ready\n", 10s)) << scene.errors();
    std::this_thread::sleep_for(300ms);
    const XInjector injector(desktop.displayName());
    const auto request = xcb_get_image(
        injector.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP,
        xcb_setup_roots_iterator(xcb_get_setup(injector.connection())).data->root, 0, 0, 1280, 720, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> screen(
        xcb_get_image_reply(injector.connection(), request, nullptr), std::free);
    ASSERT_TRUE(screen);
    DesktopRecording recording(desktop, {"--duration", "1"});
    const BgraImage picture = recordedPicture(recording.waitForEnd(), 0);

    const auto luma = [](const std::uint8_t* pixel) {
        return 0.0722 * pixel[0] + 0.7152 * pixel[1] + 0.2126 * pixel[2];
    };
    const std::uint8_t* shown = xcb_get_image_data(screen.get());
    double squares = 0;
    for (int y = 0; y < 720; ++y) {
        for (int x = 0; x < 1280; ++x, shown += 4) {
            const double error = luma(picture.row(y) + std::ptrdiff_t{4} * x) - luma(shown);
            squares += error * error;
        }
    }
    const double psnr = 10 * std::log10(255.0 * 255.0 / (squares / (1280 * 720)));
    EXPECT_GE(psnr, 45.0);
    RecordProperty("luma_psnr", std::to_string(psnr));
}

}  // namespace
}  // namespace tessaloom::test
