// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <thread>

#include "capture/CaptureError.h"
#include "capture/ScriptedDevices.h"
#include "capture/ScriptedPlatform.h"
#include "media/MovieReader.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using Script = test::ScriptedStream::Script;
using State = RecordingController::State;

/// Notes what it was asked and told.
class NotingPresenter final : public RecordingPresenter {
  public:
    std::vector<std::string> told;
    std::vector<int> countdown;
    bool goesOn = true;

    void showCountdown(int secondsLeft) override { countdown.push_back(secondsLeft); }
    void hideCountdown() override {}
    QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) override {
        told.push_back("microphone: " + reason);
        co_return goesOn;
    }
    QCoro::Task<> tellWithoutCamera(std::string reason) override {
        told.push_back("camera: " + reason);
        co_return;
    }
};

class Recording : public ::testing::Test {
  protected:
    using StartedBy = RecordingController::StartedBy;

    Recording() {
        preferences.countdownSeconds = 0;
        preferences.libraryFolder = folder.path() / "library";
        preferences.captureMicrophone = false;
        preferences.captureSystemAudio = false;
    }
    RecordingController::StartOutcome start(StartedBy by = StartedBy::user) {
        return QCoro::waitFor(controller.start(MainDisplaySource{}, preferences, cancel.get_token(), by));
    }
    TakeBundle startedBundle() { return {std::get<RecordingController::Started>(start()).bundle}; }
    void stop() { QCoro::waitFor(controller.stop()); }
    void setPreview(bool on) { QCoro::waitFor(controller.setCameraPreview(on, "chosen")); }
    std::size_t bundleCount() const {
        const std::filesystem::directory_iterator entries(folder.path() / "library");
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    test::ScriptedPlatform platform;
    test::ScriptedDevices devices;
    test::TemporaryFolder folder;
    NotingPresenter presenter;
    RecordingPreferences preferences;
    std::stop_source cancel;
    RecordingController controller{platform, devices, presenter};
};

TEST_F(Recording, LeavesACompleteBundle) {
    const TakeBundle bundle = startedBundle();
    EXPECT_EQ(controller.state(), State::recording);
    EXPECT_TRUE(std::filesystem::exists(bundle.file(TakeBundle::journalFile)));
    stop();
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(controller.lastBundle(), bundle.url);
    EXPECT_EQ(bundle.readLog().captureRect, (CaptureRect{0, 0, 64, 48, 1}));
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
    EXPECT_TRUE(std::filesystem::exists(bundle.file(TakeBundle::screenFile)));
    EXPECT_FALSE(std::filesystem::exists(bundle.file(TakeBundle::journalFile)));
}

TEST_F(Recording, ASecondStartChangesNothing) {
    startedBundle();
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start()));
    EXPECT_EQ(controller.state(), State::recording);
    stop();
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(Recording, GoesOnWithoutClicksAndKeysWhenTheDesktopRefuses) {
    platform.refusesInput = true;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
}

TEST_F(Recording, ASourceWithoutFramesFailsAndLeavesItsFolder) {
    platform.stream = Script::endsWithoutFrame;
    const auto outcome = start();
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_EQ(std::get<RecordingController::Failed>(outcome).message, CaptureError::noFrames().what());
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(Recording, TellsOnTheMainThreadThatItsSourceEnded) {
    platform.stream = Script::endsWithoutFrame;
    std::thread::id heardOn;
    QObject::connect(&controller, &RecordingController::sourceEnded,
                     [&] { heardOn = std::this_thread::get_id(); });
    start();
    QCoreApplication::processEvents();
    EXPECT_EQ(heardOn, std::this_thread::get_id());
}

TEST_F(Recording, CancelledInItsCountdownLeavesNothing) {
    preferences.countdownSeconds = 3;
    QTimer::singleShot(50, [this] { cancel.request_stop(); });
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start()));
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 0U);
}

TEST_F(Recording, CancelledBeforeTheFirstFrameLeavesNothing) {
    platform.stream = Script::nothing;
    QTimer::singleShot(50, [this] { cancel.request_stop(); });
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start()));
    EXPECT_EQ(bundleCount(), 0U);
}

TEST_F(Recording, KeepsItsJournalUntilTheEditIsStoredToo) {
    const TakeBundle bundle = startedBundle();
    std::filesystem::remove(bundle.file(TakeBundle::editFile));
    std::filesystem::create_directories(bundle.file(TakeBundle::editFile) / "in the way");
    stop();
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
    EXPECT_TRUE(std::filesystem::exists(bundle.file(TakeBundle::journalFile)));
}

TEST_F(Recording, WithoutMicrophoneAndCameraHasOffsetsOfZero) {
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_EQ(bundle.readLog().micStartOffset, 0);
    EXPECT_EQ(bundle.readLog().webcamStartOffset, 0);
    EXPECT_FALSE(bundle.hasMic());
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_FALSE(bundle.readEdit().webcam.enabled);
    EXPECT_TRUE(presenter.told.empty());
}

TEST_F(Recording, TellsWhereTheMicrophonesFileBegins) {
    devices.hasMicrophone = true;
    preferences.captureMicrophone = true;
    preferences.micDeviceID = "chosen";
    const double before = HostClock::seconds();
    const TakeBundle bundle = startedBundle();
    EXPECT_EQ(devices.askedMicrophone, "chosen");
    const double first = HostClock::seconds();
    devices.microphone.deliver({first, std::vector<float>(4800)});
    stop();
    EXPECT_TRUE(bundle.hasMic());
    EXPECT_FALSE(devices.microphone.running());
    EXPECT_GT(bundle.readLog().micStartOffset, 0);
    EXPECT_LT(bundle.readLog().micStartOffset, first - before);
}

TEST_F(Recording, AUserWithoutMicrophoneIsAskedAndMayGoOn) {
    preferences.captureMicrophone = true;
    startedBundle();
    EXPECT_EQ(presenter.told, std::vector<std::string>{"microphone: No microphone available."});
    stop();
}

TEST_F(Recording, AUserWhoWantsNoneWithoutMicrophoneGetsNone) {
    preferences.captureMicrophone = true;
    presenter.goesOn = false;
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start()));
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 0U);
}

TEST_F(Recording, AnAgentIsWarnedWhereAUserIsAsked) {
    preferences.captureMicrophone = true;
    preferences.captureWebcam = true;
    presenter.goesOn = false;
    const auto outcome = start(StartedBy::agent);
    ASSERT_TRUE(std::holds_alternative<RecordingController::Started>(outcome));
    const std::vector<std::string> expected{
        "Recording without the microphone: No microphone available.",
        "Recording without the camera: No camera available.",
    };
    EXPECT_EQ(std::get<RecordingController::Started>(outcome).warnings, expected);
    EXPECT_TRUE(presenter.told.empty());
    stop();
}

TEST_F(Recording, AnAgentsCountdownWarnsWhoeverIsWatching) {
    start(StartedBy::agent);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{3, 2, 1}));
    stop();
}

TEST_F(Recording, WhatIsNotPermittedIsSilentlyOff) {
    devices.hasMicrophone = devices.hasCamera = true;
    preferences.captureMicrophone = preferences.captureWebcam = true;
    RecordingController restricted(platform, devices, presenter, PermissionsManager([] {
                                       return PermissionsManager::Statuses{
                                           .microphone = PermissionsManager::Status::denied,
                                           .camera = PermissionsManager::Status::notDetermined};
                                   }));
    const auto outcome =
        QCoro::waitFor(restricted.start(MainDisplaySource{}, preferences, cancel.get_token()));
    QCoro::waitFor(restricted.stop());
    ASSERT_TRUE(std::holds_alternative<RecordingController::Started>(outcome));
    EXPECT_EQ(devices.microphone.starts() + devices.camera.starts(), 0);
    EXPECT_TRUE(presenter.told.empty());
}

TEST_F(Recording, ShowsTheCameraAsItWasChosen) {
    devices.hasCamera = true;
    preferences.captureWebcam = true;
    preferences.camera = {.shape = WebcamConfig::Shape::pill, .relativeSize = 0.3, .mirrored = true};
    const TakeBundle bundle = startedBundle();
    EXPECT_TRUE(bundle.readEdit().webcam.enabled) << "also if the recorder dies";
    stop();
    const WebcamConfig webcam = bundle.readEdit().webcam;
    EXPECT_TRUE(webcam.enabled && webcam.mirrored);
    EXPECT_EQ(webcam.shape, WebcamConfig::Shape::pill);
    EXPECT_EQ(webcam.relativeSize, 0.3);
    EXPECT_LT(bundle.readLog().webcamStartOffset, 0);
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::webcamFile)), 0);
}

TEST_F(Recording, TakesOverTheWarmCamera) {
    devices.hasCamera = true;
    preferences.captureWebcam = true;
    setPreview(true);
    EXPECT_EQ(devices.askedCamera, "chosen");
    ASSERT_TRUE(controller.hasCameraPreview());
    const TakeBundle bundle = startedBundle();
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_EQ(devices.camera.starts(), 1);
    stop();
    EXPECT_TRUE(bundle.hasWebcam());
    EXPECT_FALSE(devices.camera.running());
}

TEST_F(Recording, WithoutTheCameraLetsGoOfTheWarmOne) {
    devices.hasCamera = true;
    setPreview(true);
    const TakeBundle bundle = startedBundle();
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_FALSE(devices.camera.running());
    stop();
    EXPECT_FALSE(bundle.hasWebcam());
}

TEST_F(Recording, ACameraThatIsNotThereIsToldAndThePreviewStaysOff) {
    setPreview(true);
    EXPECT_FALSE(controller.hasCameraPreview());
    preferences.captureWebcam = true;
    startedBundle();
    EXPECT_EQ(presenter.told, std::vector<std::string>{"camera: No camera available."});
    stop();
}

TEST_F(Recording, ACameraThatNeverDeliversDoesNotHoldItUp) {
    devices.hasCamera = true;
    devices.cameraDelivers = false;
    preferences.captureWebcam = true;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_EQ(bundle.readLog().webcamStartOffset, 0);
    EXPECT_FALSE(bundle.readEdit().webcam.enabled);
}

TEST_F(Recording, AFailedStartLetsGoOfAllDevices) {
    devices.hasMicrophone = devices.hasCamera = devices.hasSystemAudio = true;
    preferences.captureMicrophone = preferences.captureWebcam = preferences.captureSystemAudio = true;
    platform.stream = Script::endsWithoutFrame;
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(start()));
    EXPECT_EQ(devices.microphone.starts() + devices.camera.starts() + devices.systemAudio.starts(), 3);
    EXPECT_FALSE(devices.microphone.running() || devices.camera.running() || devices.systemAudio.running());
}

}  // namespace
}  // namespace tessaloom
