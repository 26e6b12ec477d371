// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

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

constexpr const char* noTap = "Event tap unavailable; clicks and keys will not be recorded";

TEST_F(Recording, GoesOnWithoutClicksAndKeysWhenTheDesktopRefuses) {
    platform.refusesInput = true;
    const LogLines lines;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, noTap));
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
}

TEST_F(Recording, GoesOnWithoutClicksAndKeysWhereNobodyCanListen) {
    platform.hasInput = false;
    const LogLines lines;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, noTap));
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
    EXPECT_TRUE(bundle.readLog().events.empty());
}

TEST_F(Recording, GoesOnWithoutAPointerThatCanBeFollowed) {
    platform.hasPointer = false;
    const LogLines lines;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Pointer unavailable; its path will not be recorded"));
    EXPECT_FALSE(lines.contains(noTap));
    EXPECT_TRUE(bundle.readLog().cursorSamples.empty());
}

TEST_F(Recording, ASourceWithoutFramesFailsAndLeavesItsFolder) {
    platform.stream = Script::endsWithoutFrame;
    const LogLines lines;
    const auto outcome = start();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Failed to start recording: The selected source never"));
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_EQ(std::get<RecordingController::Failed>(outcome).message, CaptureError::noFrames().what());
    EXPECT_EQ(presenter.told, std::vector{std::string("failure: ") + CaptureError::noFrames().what()});
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(Recording, AStreamKilledWhileItsFirstFrameIsAwaitedFailsAtOnce) {
    std::promise<void> killed;
    platform.stream = Script::endsWithoutFrame;
    platform.streamEnd = killed.get_future().share();
    auto task = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(8s));
    killed.set_value();
    const auto outcome = QCoro::waitFor(task);  // no time passes
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_EQ(std::get<RecordingController::Failed>(outcome).message, CaptureError::noFrames().what());
    EXPECT_EQ(controller.state(), State::idle);
}

TEST_F(Recording, ASourceThatStaysHiddenFailsAfterEightSeconds) {
    platform.stream = Script::nothing;
    auto task = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(8s));
    clock.advance(7999ms);
    EXPECT_EQ(controller.state(), State::starting);
    clock.advance(1ms);
    const auto outcome = QCoro::waitFor(task);
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_EQ(std::get<RecordingController::Failed>(outcome).message, CaptureError::noFrames().what());
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(Recording, AFailureWithoutPermissionForTheScreenSaysSo) {
    platform.stream = Script::endsWithoutFrame;
    except({{Permission::screenRecording, PermissionStatus::denied}});
    start();
    EXPECT_EQ(presenter.told, std::vector{std::string("no permission: ") + CaptureError::noFrames().what()});
}

TEST_F(Recording, RemembersThatTheScreenWasLookedAtAlsoWhereItMayBe) {
    startedBundle();
    EXPECT_EQ(Defaults(folder.path() / "settings.ini").boolean("askedScreenRecording"), true);
    stop();
}

TEST_F(Recording, ASourceThatCannotBeFoundMakesNoFolder) {
    const auto outcome =
        throughCountdown(controller.start(AppWindowSource{"Safari", {}}, preferences, cancel.get_token()));
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(outcome));
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_FALSE(std::filesystem::exists(preferences.libraryFolder));
}

TEST_F(Recording, ALibraryThatCannotBeMadeIsAFailure) {
    preferences.libraryFolder = "/proc/nowhere";
    EXPECT_TRUE(std::holds_alternative<RecordingController::Failed>(start()));
    EXPECT_EQ(controller.state(), State::idle);
}

TEST_F(Recording, LooksAtItsSourceBeforeItCounts) {
    const test::LogLines lines;
    startedBundle();
    EXPECT_EQ(platform.preflights, (std::vector<Rect>{{0, 0, 64, 48}}));
    EXPECT_TRUE(lines.contains("Capture preflight ok in "));
    stop();
}

TEST_F(Recording, GoesOnWhenItsFirstLookFails) {
    platform.refusesPictures = true;
    const test::LogLines lines;
    startedBundle();
    EXPECT_TRUE(lines.contains("Capture preflight failed in "));
    stop();
}

TEST_F(Recording, GoesOnWhenItsFirstLookThrows) {
    platform.losesServer = true;
    const LogLines lines;
    startedBundle();
    EXPECT_TRUE(lines.contains("Capture preflight failed in "));
    stop();
}

TEST_F(Recording, PassesThroughItsFourStatesInOrder) {
    std::vector<State> states;
    QObject::connect(&controller, &RecordingController::stateChanged,
                     [&](State state) { states.push_back(state); });
    startedBundle();
    stop();
    EXPECT_EQ(states, (std::vector{State::starting, State::recording, State::finishing, State::idle}));
}

TEST_F(Recording, OpensTheEditorWhenItsUserStopsIt) {
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_EQ(presenter.opened, std::vector{bundle.url});
    EXPECT_TRUE(presenter.bar.empty());
}

TEST_F(Recording, TellsTheLogWhatItCameTo) {
    platform.pressedKey = "AD01";
    const TakeBundle bundle = startedBundle();
    const LogLines lines;
    stop();
    const EventLog log = bundle.readLog();
    EXPECT_EQ(log.events.size(), 1U);
    EXPECT_TRUE(lines.contains(QtInfoMsg, "Recording stopped: " + std::to_string(log.cursorSamples.size()) +
                                              " cursor samples, 1 events, " +
                                              std::to_string(bundle.readEdit().zoomKeyframes.size()) +
                                              " zoom keyframes"));
}

TEST_F(Recording, WithoutSamplesAndEventsHasNoZooms) {
    platform.pointerIsKnown = false;
    const TakeBundle bundle = startedBundle();
    stop();
    EXPECT_TRUE(bundle.readLog().cursorSamples.empty());
    EXPECT_TRUE(bundle.readEdit().zoomKeyframes.empty());
}

TEST_F(Recording, AWriterThatHangsHoldsTheStopUpForTwentySecondsAtMost) {
    std::promise<void> disk;
    platform.streamStop = disk.get_future().share();
    const TakeBundle bundle = startedBundle();
    auto task = controller.stop();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(20s));
    clock.advance(19'999ms);
    EXPECT_EQ(controller.state(), State::finishing);
    clock.advance(1ms);
    QCoro::waitFor(task);
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_FALSE(bundle.readLog().cursorSamples.empty());
    disk.set_value();
}

TEST_F(Recording, AMicrophoneThatHangsHoldsTheStopUpForTenSecondsAtMost) {
    std::promise<void> server;
    devices.hasMicrophone = preferences.captureMicrophone = true;
    devices.soundStop = server.get_future().share();
    startedBundle();
    auto task = controller.stop();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(10s));
    clock.advance(9999ms);
    EXPECT_EQ(controller.state(), State::finishing);
    clock.advance(1ms);
    QCoro::waitFor(task);
    EXPECT_EQ(controller.state(), State::idle);
    server.set_value();
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
    auto task = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
    cancel.request_stop();
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(throughCountdown(std::move(task))));
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 0U);
    EXPECT_EQ(presenter.bar, std::vector<std::string>{"shown"});
}

TEST_F(Recording, TheCountdownIsOffTheScreenBeforeTheFirstFrame) {
    preferences.countdownSeconds = 1;
    auto task = startTask();
    for (int slice = 0; slice < 10; ++slice) {
        ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
        clock.advance(100ms);
    }
    ASSERT_TRUE(clock.runUntilSomebodyWaits(120ms));
    EXPECT_EQ(presenter.countdown, (std::vector<int>{1, 0}));
    EXPECT_EQ(platform.streamsMade, 0);
    clock.advance(120ms);
    QCoro::waitFor(task);
    EXPECT_EQ(platform.streamsMade, 1);
    stop();
}

TEST_F(Recording, WithoutACountdownNothingIsCounted) {
    startedBundle();
    EXPECT_TRUE(presenter.countdown.empty());
    stop();
}

TEST_F(Recording, CancelledBeforeTheFirstFrameLeavesNothing) {
    platform.stream = Script::nothing;
    auto task = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(8s));
    cancel.request_stop();
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(QCoro::waitFor(task)));
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

std::string offsetLine(const char* pattern, double seconds) {
    return QString::asprintf(pattern, seconds).toStdString();
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
    const LogLines lines;
    stop();
    EXPECT_TRUE(lines.contains(
        QtInfoMsg, offsetLine("Mic starts %.3fs after the origin", bundle.readLog().micStartOffset)));
    EXPECT_TRUE(bundle.hasMic());
    EXPECT_FALSE(devices.microphone.running());
    EXPECT_GT(bundle.readLog().micStartOffset, 0);
    EXPECT_LT(bundle.readLog().micStartOffset, first - before);
}

TEST_F(Recording, AUserWithoutMicrophoneIsAskedAndMayGoOn) {
    preferences.captureMicrophone = true;
    const LogLines lines;
    startedBundle();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Microphone unavailable: No microphone available."));
    EXPECT_EQ(presenter.told, std::vector<std::string>{"microphone: No microphone available."});
    stop();
}

TEST_F(Recording, AMicrophonesFileThatCannotBeMadeIsToldBeforeTheCountdown) {
    devices.hasMicrophone = preferences.captureMicrophone = true;
    devices.beforeMicrophone = [this] {
        const auto bundle = std::filesystem::directory_iterator(preferences.libraryFolder)->path();
        std::filesystem::create_directories(bundle / TakeBundle::microphoneFile / "in the way");
    };
    presenter.goesOn = false;
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start()));
    ASSERT_EQ(presenter.told.size(), 1U);
    EXPECT_TRUE(presenter.told.front().starts_with("microphone: ")) << presenter.told.front();
    EXPECT_EQ(bundleCount(), 0U);
}

TEST_F(Recording, WithoutAWantedSystemAudioItsUserIsTold) {
    preferences.captureSystemAudio = true;
    const LogLines lines;
    startedBundle();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "System audio unavailable: The script has no sound server."));
    EXPECT_EQ(presenter.told, std::vector<std::string>{"system audio: The script has no sound server."});
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
    preferences.captureSystemAudio = true;
    presenter.goesOn = false;
    const auto outcome = start(StartedBy::agent);
    ASSERT_TRUE(std::holds_alternative<RecordingController::Started>(outcome));
    const std::vector<std::string> expected{
        "Recording without the microphone: No microphone available.",
        "Recording without the camera: No camera available.",
        "Recording without system audio: The script has no sound server.",
    };
    EXPECT_EQ(std::get<RecordingController::Started>(outcome).warnings, expected);
    EXPECT_TRUE(presenter.told.empty());
    stop();
}

TEST_F(Recording, AnAgentsCountdownWarnsWhoeverIsWatching) {
    start(StartedBy::agent);
    EXPECT_EQ(presenter.countdown, (std::vector<int>{3, 2, 1, 0}));
    stop();
}

TEST_F(Recording, WhatIsNotPermittedIsSilentlyOff) {
    devices.hasMicrophone = devices.hasCamera = true;
    preferences.captureMicrophone = preferences.captureWebcam = true;
    except({{Permission::microphone, PermissionStatus::denied},
            {Permission::camera, PermissionStatus::notDetermined}});
    startedBundle();
    stop();
    EXPECT_EQ(devices.microphone.starts() + devices.camera.starts(), 0);
    EXPECT_TRUE(presenter.told.empty());
}

TEST_F(Recording, ShowsTheCameraAsItWasChosen) {
    devices.hasCamera = true;
    preferences.captureWebcam = true;
    preferences.camera = {.shape = WebcamConfig::Shape::pill, .relativeSize = 0.3, .mirrored = true};
    const TakeBundle bundle = startedBundle();
    EXPECT_TRUE(bundle.readEdit().webcam.enabled) << "also if the recorder dies";
    const LogLines lines;
    stop();
    EXPECT_TRUE(lines.contains(QtInfoMsg, offsetLine("Webcam starts %.3fs relative to the origin",
                                                     bundle.readLog().webcamStartOffset)));
    const WebcamConfig webcam = bundle.readEdit().webcam;
    EXPECT_TRUE(webcam.enabled && webcam.mirrored);
    EXPECT_EQ(webcam.shape, WebcamConfig::Shape::pill);
    EXPECT_EQ(webcam.relativeSize, 0.3);
    EXPECT_LT(bundle.readLog().webcamStartOffset, 0);
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::webcamFile)), 0);
}

TEST_F(Recording, ShowsTheCameraAndHidesTheIconsUntilItStops) {
    devices.hasCamera = true;
    preferences.captureWebcam = true;
    preferences.hideDesktopIcons = true;
    startedBundle();
    EXPECT_EQ(presenter.shown, (std::vector<std::string>{"camera", "no icons"}));
    stop();
    EXPECT_EQ(presenter.shown, (std::vector<std::string>{"camera", "no icons", "icons", "no camera"}));
}

TEST_F(Recording, ThatFailsShowsTheIconsAgain) {
    platform.stream = Script::endsWithoutFrame;
    preferences.hideDesktopIcons = true;
    start();
    EXPECT_EQ(presenter.shown, (std::vector<std::string>{"no icons", "icons", "no camera"}));
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
    EXPECT_TRUE(clock.runUntil([this] { return !devices.camera.running(); }));
    stop();
    EXPECT_FALSE(bundle.hasWebcam());
}

TEST_F(Recording, ACameraThatIsNotThereIsToldAndThePreviewStaysOff) {
    const LogLines lines;
    setPreview(true);
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Camera preview unavailable: No camera available."));
    preferences.captureWebcam = true;
    startedBundle();
    EXPECT_TRUE(lines.contains(QtCriticalMsg, "Webcam unavailable: No camera available."));
    EXPECT_EQ(presenter.told, std::vector<std::string>{"camera: No camera available."});
    stop();
}

TEST_F(Recording, ACameraThatNeverDeliversDoesNotHoldItUp) {
    devices.hasCamera = true;
    devices.cameraDelivers = false;
    preferences.captureWebcam = true;
    auto task = startTask();
    ASSERT_TRUE(clock.runUntil([this] { return devices.camera.running(); }));
    clock.advance(3999ms);
    EXPECT_EQ(controller.state(), State::starting);
    clock.advance(1ms);
    const TakeBundle bundle{std::get<RecordingController::Started>(QCoro::waitFor(task)).bundle};
    stop();
    EXPECT_FALSE(bundle.hasWebcam());
    EXPECT_EQ(bundle.readLog().webcamStartOffset, 0);
    EXPECT_FALSE(bundle.readEdit().webcam.enabled);
}

TEST_F(Recording, CancelledWhileItsCameraIsAwaitedEndsAtOnce) {
    devices.hasCamera = true;
    devices.cameraDelivers = false;
    preferences.captureWebcam = true;
    auto task = startTask();
    ASSERT_TRUE(clock.runUntil([this] { return devices.camera.running(); }));
    cancel.request_stop();
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(QCoro::waitFor(task)));
    EXPECT_EQ(platform.streamsMade, 0);
    EXPECT_FALSE(devices.camera.running());
    EXPECT_EQ(bundleCount(), 0U);
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
}  // namespace tessaloom::test
