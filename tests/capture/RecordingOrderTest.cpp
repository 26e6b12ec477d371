// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>

#include "capture/RecordingController.h"
#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

/// With everything that can be recorded.
class RecordingOrder : public Recording {
  protected:
    RecordingOrder() {
        devices.hasMicrophone = devices.hasCamera = true;
        preferences.captureMicrophone = preferences.captureWebcam = preferences.hideDesktopIcons = true;
    }

    /// Of what was logged, the beginnings of lines that tell of a step, each the first time in a row.
    std::vector<std::string> steps() const {
        static constexpr std::array milestones{"Microphone capture warmed", "Webcam session warmed",
                                               "Webcam recording started",  "Webcam file started",
                                               "Screen capture started",    "Recording started"};
        std::vector<std::string> found;
        for (const std::string& line : lines.texts()) {
            if (line.starts_with("step: ")) found.push_back(line.substr(6));
            for (const std::string milestone : milestones) {
                if (line.starts_with(milestone)) found.push_back(milestone);
            }
        }
        found.erase(std::unique(found.begin(), found.end()), found.end());
        return found;
    }

    const LogLines lines;
};

TEST_F(RecordingOrder, OfAStart) {
    preferences.countdownSeconds = 1;
    devices.cameraDelivers = false;
    double beforeArming = 0;
    platform.beforeInput = [&] {
        beforeArming = HostClock::seconds();
        devices.microphone.deliver({beforeArming, std::vector<float>(480)});
    };
    auto task = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
    for (int slice = 0; slice < 10; ++slice) {
        ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
        clock.advance(100ms);
    }
    ASSERT_TRUE(clock.runUntilSomebodyWaits(120ms));
    clock.advance(120ms);
    ASSERT_TRUE(clock.runUntilSomebodyWaits(4s)) << "for the camera's file";
    EXPECT_EQ(platform.streamsMade, 0);
    const BgraImage picture(64, 48);
    devices.camera.deliver({HostClock::seconds(), picture.view()});
    const TakeBundle bundle{std::get<RecordingController::Started>(QCoro::waitFor(task)).bundle};
    const std::vector<std::string> expected{"Microphone capture warmed",
                                            "Webcam session warmed",
                                            "Webcam recording started",
                                            "no icons",
                                            "input",  // for the countdown's space bar
                                            "countdown 1",
                                            "Webcam file started",
                                            "stream",
                                            "Screen capture started",
                                            "pointer",
                                            "input",
                                            "Recording started"};
    EXPECT_EQ(steps(), expected);

    std::this_thread::sleep_for(200ms);
    const double armed = HostClock::seconds();
    devices.microphone.deliver({armed, std::vector<float>(4800)});
    stop();
    EXPECT_GT(bundle.readLog().micStartOffset, armed - beforeArming)
        << "what came while the tap was made is out";
}

TEST_F(RecordingOrder, OfAStartThatFails) {
    platform.stream = Script::endsWithoutFrame;
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(start()));
    const auto all = steps();
    const auto failed = std::ranges::find(all, "Screen capture started");
    ASSERT_GE(all.end() - failed, 6);
    const std::vector<std::string> afterwards(failed + 1, failed + 6);  // as they go they stop once more
    EXPECT_EQ(afterwards, (std::vector<std::string>{"icons", "no camera", "stream stops", "sound stops",
                                                    "camera stops"}));
}

TEST_F(RecordingOrder, OfAStartThatFindsNothingLetsGoOfTheWarmCamera) {
    setPreview(true);
    const auto outcome =
        throughCountdown(controller.start(AppWindowSource{"Safari", {}}, preferences, cancel.get_token()));
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_FALSE(devices.camera.running());
}

TEST_F(RecordingOrder, AStopThatCanStoreNothingStillEndsAndOpensTheEditor) {
    preferences.captureWebcam = preferences.captureMicrophone = false;
    const TakeBundle bundle = startedBundle();
    for (const auto name : {TakeBundle::eventsFile, TakeBundle::editFile}) {
        std::filesystem::remove(bundle.file(name));
        std::filesystem::create_directories(bundle.file(name) / "in the way");
    }
    stop();
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(presenter.opened, std::vector{bundle.url});
    EXPECT_EQ(controller.lastBundle(), bundle.url);
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Failed to write events.json: "));
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Failed to write edit.json: "));
}

}  // namespace
}  // namespace tessaloom::test
