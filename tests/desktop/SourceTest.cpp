// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "media/MovieReader.h"
#include "support/TestWindow.h"
#include "support/XInjector.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t green = 0x20A040;
constexpr std::uint32_t red = 0xC02020;

/// The words with which a recording refuses to start.
std::string refusal(const VirtualDesktop& desktop, const std::vector<std::string>& arguments) {
    const TemporaryFolder library;
    std::vector<std::string> command{TESSALOOM_PROGRAM, "record", "--countdown", "0"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    auto environment = programEnvironment(desktop.environment(), library.path());
    environment.erase("TESSALOOM_VERBOSE");
    ChildProcess program(command, environment);
    EXPECT_EQ(program.waitForExit(15s), 1);
    EXPECT_EQ(program.output(), "");
    return program.errors();
}

TEST(Source, AnAreaIsRecordedAlone) {
    const VirtualDesktop desktop(640, 480);
    const XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {101, 51, 100, 100}, .rgb = green});
    DesktopRecording recording(desktop, {"--area", "101,51,201,101", "--duration", "0.5"});
    const TakeBundle bundle = recording.waitForEnd();
    const BgraImage picture = recordedPicture(bundle, 0);
    EXPECT_EQ(picture.width(), 200);
    EXPECT_EQ(picture.height(), 100);
    EXPECT_TRUE(isNearly(colorAt(picture, 2, 2), green));
    EXPECT_TRUE(isNearly(colorAt(picture, 97, 97), green));
    EXPECT_TRUE(isNearly(colorAt(picture, 103, 50), 0x000000));
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{101, 51, 200, 100, 1}));
}

TEST(Source, DisplaysAreTheServersMonitors) {
    const VirtualDesktop desktop(640, 480);
    splitScreen(desktop);
    const XInjector injector(desktop.displayName());
    TestWindow window(injector.connection(), {.rect = {320, 0, 320, 480}, .rgb = green});
    DesktopRecording recording(desktop, {"--display", "1", "--duration", "0.5"});
    const TakeBundle bundle = recording.waitForEnd();
    const BgraImage picture = recordedPicture(bundle, 0);
    EXPECT_EQ(picture.width(), 320);
    EXPECT_TRUE(isNearly(colorAt(picture, 3, 3), green));
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{320, 0, 320, 480, 1}));
    EXPECT_EQ(refusal(desktop, {"--display", "2"})
                  .find("tessaloom: Couldn't start recording: No display available to capture. "),
              0U);
}

TEST(Source, AnAreaAcrossTwoMonitorsIsCutToTheOneWithMoreOfIt) {
    const VirtualDesktop desktop(640, 480);
    splitScreen(desktop);
    DesktopRecording recording(desktop, {"--area", "300,100,100,100", "--duration", "0.5"});
    EXPECT_EQ(recording.waitForEnd().readLog().captureRect, (CaptureRect{320, 100, 80, 100, 1}));
}

TEST(Source, AnAreaOffEveryScreenIsRefused) {
    const VirtualDesktop desktop(640, 480);
    EXPECT_EQ(refusal(desktop, {"--area", "5000,0,100,100"})
                  .find("tessaloom: Couldn't start recording: No display available to capture. "),
              0U);
}

TEST(Source, AnUnknownWindowIsRefused) {
    const VirtualDesktop desktop(640, 480);
    EXPECT_EQ(refusal(desktop, {"--window", "Safari", "--title", "News"}),
              "tessaloom: Couldn't start recording: No visible window matches Safari \"News\". Check the app "
              "is open "
              "and the window is not minimised.\n");
}

TEST(Source, ScaledDesktopsAreMeasuredInPoints) {
    const VirtualDesktop desktop(640, 480);
    setDotsPerInch(desktop, 192);
    DesktopRecording recording(desktop, {"--area", "10,10,100,50", "--duration", "0.5"});
    const TakeBundle bundle = recording.waitForEnd();
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{10, 10, 100, 50, 2}));
    EXPECT_EQ(recordedPicture(bundle, 0).width(), 200);
}

bool waitForWords(ChildProcess& program, const std::string& words) {
    for (int round = 0; round < 1000 && program.running(); ++round) {
        if (program.errors().find(words) != std::string::npos) return true;
        program.waitForExit(10ms);
    }
    return false;
}

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// A window of an application called Greenhouse on a desktop with a window manager.
class WindowSource : public ::testing::Test {
  protected:
    const VirtualDesktop desktop_{800, 600, WindowManager::Openbox};
    const XInjector injector_{desktop_.displayName()};
    std::optional<TestWindow> window_{std::in_place, injector_.connection(),
                                      WindowDescription{.rect = {50, 50, 300, 200},
                                                        .rgb = green,
                                                        .kind = WindowKind::Managed,
                                                        .title = "Seedlings",
                                                        .applicationName = "Greenhouse"}};

    void SetUp() override { std::this_thread::sleep_for(200ms); }
};

TEST_F(WindowSource, IsRecordedByItselfAlsoWhileCovered) {
    DesktopRecording recording(desktop_, {"--window", "greenhouse", "--title", "seed"});
    std::this_thread::sleep_for(200ms);
    TestWindow cover(injector_.connection(), {.rect = {0, 0, 800, 600}, .rgb = red});
    window_->fill({100, 100, 50, 50}, 0x3060F0);
    std::this_thread::sleep_for(300ms);
    const TakeBundle bundle = recording.stop();
    const BgraImage picture = recordedPicture(bundle, logDuration(bundle.readLog()));
    EXPECT_EQ(picture.width(), 300);
    EXPECT_EQ(picture.height(), 200);
    EXPECT_TRUE(isNearly(colorAt(picture, 20, 20), green));
    EXPECT_TRUE(isNearly(colorAt(picture, 125, 125), 0x3060F0));
}

TEST_F(WindowSource, KeepsItsFirstSizeWhenResized) {
    DesktopRecording recording(desktop_, {"--window", "Greenhouse"});
    std::this_thread::sleep_for(200ms);
    window_->moveResize({60, 60, 150, 100});
    std::this_thread::sleep_for(300ms);  // the window manager does it in its own time
    window_->fill({0, 0, 150, 100}, green);
    std::this_thread::sleep_for(400ms);
    const TakeBundle bundle = recording.stop();
    const BgraImage picture = recordedPicture(bundle, logDuration(bundle.readLog()));
    EXPECT_EQ(picture.width(), 300);
    EXPECT_EQ(picture.height(), 200);
    EXPECT_TRUE(isNearly(colorAt(picture, 140, 90), green));
    EXPECT_TRUE(isNearly(colorAt(picture, 200, 150), 0x000000));
}

TEST_F(WindowSource, GrownBeyondItsFirstSizeShowsItsTopLeftPart) {
    DesktopRecording recording(desktop_, {"--window", "Greenhouse"});
    std::this_thread::sleep_for(200ms);
    window_->moveResize({60, 60, 500, 400});
    std::this_thread::sleep_for(300ms);  // the window manager does it in its own time
    window_->fill({0, 0, 500, 400}, 0x3060F0);
    std::this_thread::sleep_for(400ms);
    const TakeBundle bundle = recording.stop();
    const BgraImage picture = recordedPicture(bundle, logDuration(bundle.readLog()));
    EXPECT_EQ(picture.width(), 300);
    EXPECT_TRUE(isNearly(colorAt(picture, 295, 195), 0x3060F0));
}

TEST_F(WindowSource, IsRecordedWhereTheCountdownLeavesIt) {
    XInjector input(desktop_.displayName());
    const TemporaryFolder library;
    ChildProcess program({TESSALOOM_PROGRAM, "record", "--countdown", "1", "--window", "Greenhouse"},
                         programEnvironment(desktop_.environment(), library.path()));
    ASSERT_TRUE(waitForWords(program, "Capture preflight")) << program.errors();
    window_->moveResize({300, 250, 200, 100});
    ASSERT_TRUE(waitForWords(program, "Recording started")) << program.errors();
    window_->fill({0, 0, 200, 100}, green);
    const auto place =
        xcb_translate_coordinates_reply(injector_.connection(),
                                        xcb_translate_coordinates(injector_.connection(), window_->id(),
                                                                  rootOf(injector_.connection()), 0, 0),
                                        nullptr);
    const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(&std::free)> owned(place, std::free);
    ASSERT_TRUE(owned);
    input.moveTo({place->dst_x + 150, place->dst_y + 25});
    std::this_thread::sleep_for(300ms);
    input.click();
    std::this_thread::sleep_for(300ms);
    program.signal(SIGINT);
    ASSERT_EQ(program.waitForExit(15s), 0) << program.errors();

    const TakeBundle bundle = RecordingLibrary(library.path()).recentBundles(1).front();
    const EventLog log = bundle.readLog();
    EXPECT_EQ(log.captureRect, (CaptureRect{double(place->dst_x), double(place->dst_y), 200, 100, 1}));
    EXPECT_EQ(recordedPicture(bundle, logDuration(log)).width(), 200);
    EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, logDuration(log)), 190, 90), green));
    ASSERT_EQ(log.events.size(), 1U);
    ASSERT_TRUE(log.events[0].location);
    EXPECT_NEAR(log.events[0].location->x, 0.75, 0.01);
    EXPECT_NEAR(log.events[0].location->y, 0.25, 0.01);
}

TEST_F(WindowSource, ClosedInTheCountdownItIsAFailure) {
    const TemporaryFolder library;
    ChildProcess program({TESSALOOM_PROGRAM, "record", "--countdown", "1", "--window", "Greenhouse"},
                         programEnvironment(desktop_.environment(), library.path()));
    ASSERT_TRUE(waitForWords(program, "Capture preflight")) << program.errors();
    window_.reset();
    EXPECT_EQ(program.waitForExit(15s), 1);
    EXPECT_NE(program.errors().find("The selected source never produced a frame."), std::string::npos);
}

TEST_F(WindowSource, ClosedWhileRecordingEndsInAFinishedBundle) {
    DesktopRecording recording(desktop_, {"--window", "Greenhouse"});
    std::this_thread::sleep_for(500ms);
    window_.reset();
    const TakeBundle bundle = recording.waitForEnd();
    EXPECT_NE(recording.program().errors().find("The recorded window was closed."), std::string::npos);
    EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, 0.3), 20, 20), green));
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
}

TEST_F(WindowSource, ItsEndIsToldOnce) {
    const TemporaryFolder library;
    auto environment = programEnvironment(desktop_.environment(), library.path());
    environment.erase("TESSALOOM_VERBOSE");
    ChildProcess program({TESSALOOM_PROGRAM, "record", "--countdown", "0", "--window", "Greenhouse",
                          "--no-microphone", "--no-camera", "--system-audio"},
                         environment);
    std::this_thread::sleep_for(1500ms);
    window_.reset();
    EXPECT_EQ(program.waitForExit(15s), 0);
    const std::string errors = program.errors();
    EXPECT_TRUE(errors.starts_with("Recording without system audio: ")) << errors;
    EXPECT_TRUE(
        errors.ends_with("\nThe recorded window was closed. What was recorded until then is saved.\n"))
        << errors;
    EXPECT_EQ(std::ranges::count(errors, '\n'), 2) << errors;
}

TEST_F(WindowSource, HiddenAndShownAgainItGoesOn) {
    DesktopRecording recording(desktop_, {"--window", "Greenhouse"});
    std::this_thread::sleep_for(200ms);
    window_->unmap();
    std::this_thread::sleep_for(200ms);
    window_->map();
    std::this_thread::sleep_for(100ms);
    window_->fill({0, 0, 300, 200}, 0x3060F0);
    std::this_thread::sleep_for(300ms);
    const TakeBundle bundle = recording.stop();
    EXPECT_TRUE(isNearly(colorAt(recordedPicture(bundle, logDuration(bundle.readLog())), 20, 20), 0x3060F0));
}

}  // namespace
}  // namespace tessaloom::test
