// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

/// What the record bar, hot keys and the status item call, which wait for no answer.
class RecordingOperations : public Recording {
  protected:
    bool reaches(State state) {
        return ManualWaitClock::runUntil([&] { return controller.state() == state; });
    }
    CaptureRect recordedRect() {
        stop();
        return TakeBundle{*controller.lastBundle()}.readLog().captureRect;
    }
    RecordingController::StartOutcome startPicked(StartedBy by) {
        return throughCountdown(controller.start(PickerSource{}, preferences, cancel.get_token(), by));
    }
};

TEST_F(RecordingOperations, TogglingRecordsTheMainDisplayAndThenStops) {
    controller.toggle(preferences);
    ASSERT_TRUE(reaches(State::recording));
    controller.toggle(preferences);
    ASSERT_TRUE(reaches(State::idle));
    EXPECT_EQ(TakeBundle{*controller.lastBundle()}.readLog().captureRect, (CaptureRect{0, 0, 64, 48, 1}));
    EXPECT_EQ(presenter.opened, std::vector{*controller.lastBundle()});
}

TEST_F(RecordingOperations, TogglingDoesNothingWhileAStartIsUnderWay) {
    preferences.countdownSeconds = 3;
    controller.toggle(preferences);
    ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
    controller.toggle(preferences);
    QCoreApplication::processEvents();
    EXPECT_EQ(controller.state(), State::starting);
    const bool started = clock.runUntil([&] {
        for (const auto slice : {100ms, 120ms}) {
            if (clock.somebodyWaits(slice)) clock.advance(slice);
        }
        return controller.state() == State::recording;
    });
    EXPECT_TRUE(started);
    stop();
}

TEST_F(RecordingOperations, TogglingDoesNothingWhileAStopIsUnderWay) {
    std::promise<void> disk;
    platform.streamStop = disk.get_future().share();
    startedBundle();
    auto task = controller.stop();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(20s));
    controller.toggle(preferences);
    EXPECT_EQ(controller.state(), State::finishing);
    disk.set_value();
    QCoro::waitFor(task);
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(RecordingOperations, AnAreaIsRecorded) {
    controller.startRegion({10, 12, 20, 10}, preferences);
    ASSERT_TRUE(reaches(State::recording));
    EXPECT_EQ(recordedRect(), (CaptureRect{10, 12, 20, 10, 1}));
}

TEST_F(RecordingOperations, AnAreaMustBeWiderAndTallerThanEightPoints) {
    controller.startRegion({10, 10, 8, 30}, preferences);
    EXPECT_EQ(controller.state(), State::idle);
    controller.startRegion({10, 10, 30, 8}, preferences);
    EXPECT_EQ(controller.state(), State::idle);
    controller.startRegion({10, 10, 8.5, 8.5}, preferences);
    ASSERT_TRUE(reaches(State::recording));
    stop();
}

TEST_F(RecordingOperations, OnlyWhenIdleDoTheyStart) {
    const TakeBundle bundle = startedBundle();
    controller.startRegion({10, 12, 20, 10}, preferences);
    controller.startPicked(preferences);
    EXPECT_EQ(controller.state(), State::recording);
    EXPECT_EQ(platform.picker.asked, 0);
    stop();
    EXPECT_EQ(controller.lastBundle(), bundle.url);
    EXPECT_EQ(bundleCount(), 1U);
}

TEST_F(RecordingOperations, WhatWasPickedIsRecordedAsItIs) {
    platform.picker.answer = ContentFilter{7, {5, 6, 32, 16}, 2};
    controller.startPicked(preferences);
    ASSERT_TRUE(reaches(State::recording));
    EXPECT_EQ(platform.preflights, (std::vector<Rect>{{5, 6, 32, 16}}));
    EXPECT_EQ(recordedRect(), (CaptureRect{5, 6, 32, 16, 2}));
}

TEST_F(RecordingOperations, AWindowIsRecordedWhereItIsWhenTheRecordingBegins) {
    platform.picker.answer = ContentFilter{7, {5, 6, 32, 16}, 2};
    platform.presentFrame = Rect{8, 9, 40, 20};
    controller.startPicked(preferences);
    ASSERT_TRUE(reaches(State::recording));
    EXPECT_EQ(recordedRect(), (CaptureRect{8, 9, 40, 20, 2}));
}

TEST_F(RecordingOperations, APickDoesNotCountAsHavingAskedForTheScreen) {
    except({{Permission::screenRecording, PermissionStatus::notDetermined}});
    startPicked(StartedBy::user);
    EXPECT_EQ(Defaults(folder.path() / "settings.ini").boolean("askedScreenRecording"), std::nullopt);
}

TEST_F(RecordingOperations, WhereNothingWasPickedTheBarComesBack) {
    const LogLines lines;
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(startPicked(StartedBy::user)));
    EXPECT_TRUE(lines.contains("Source selection cancelled / unavailable"));
    EXPECT_EQ(controller.state(), State::idle);
    EXPECT_EQ(presenter.bar, std::vector<std::string>{"shown"});
    EXPECT_TRUE(presenter.told.empty());
    EXPECT_FALSE(std::filesystem::exists(preferences.libraryFolder));
}

TEST_F(RecordingOperations, WhereNothingWasPickedForAnAgentTheBarStaysOff) {
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(startPicked(StartedBy::agent)));
    EXPECT_TRUE(presenter.bar.empty());
}

TEST_F(RecordingOperations, WhereNothingWasPickedTheWarmCameraStays) {
    devices.hasCamera = true;
    setPreview(true);
    startPicked(StartedBy::user);
    EXPECT_TRUE(controller.hasCameraPreview());
    EXPECT_TRUE(devices.camera.running());
    EXPECT_EQ(presenter.shown, std::vector<std::string>{"camera"});
}

TEST_F(RecordingOperations, TheWarmCamerasPictureIsShownAnew) {
    controller.refreshCameraPreview({});
    EXPECT_TRUE(presenter.shown.empty()) << "no camera is warm";
    devices.hasCamera = true;
    setPreview(true);
    controller.refreshCameraPreview({.shape = WebcamConfig::Shape::pill, .relativeSize = 0.3});
    EXPECT_EQ(presenter.shown, (std::vector<std::string>{"camera", "camera"}));
    EXPECT_EQ(presenter.choices.back().shape, WebcamConfig::Shape::pill);
    EXPECT_EQ(devices.camera.starts(), 1) << "it only looks different";
}

TEST_F(RecordingOperations, TheBubbleOfARunningRecordingStaysAsItIs) {
    devices.hasCamera = preferences.captureWebcam = true;
    startedBundle();
    controller.refreshCameraPreview({});
    EXPECT_EQ(presenter.shown, std::vector<std::string>{"camera"});
    stop();
}

TEST_F(RecordingOperations, AFinishedBundleIsTold) {
    std::vector<std::filesystem::path> told;
    QObject::connect(&controller, &RecordingController::lastBundleChanged,
                     [&](const std::filesystem::path& bundle) { told.push_back(bundle); });
    const TakeBundle bundle = startedBundle();
    EXPECT_TRUE(told.empty());
    stop();
    EXPECT_EQ(told, std::vector{bundle.url});
}

}  // namespace
}  // namespace tessaloom::test
