// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"
#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

/// The camera between recordings, switched faster than cameras are.
class CameraPreview : public Recording {
  protected:
    CameraPreview() { devices.hasCamera = true; }
    ~CameraPreview() override {
        for (std::promise<void>* promise : {&opening, &stopping})
            release(*promise);
    }
    CameraPreview(const CameraPreview&) = delete;
    CameraPreview& operator=(const CameraPreview&) = delete;

    void holdOpening() { devices.cameraOpening = opening.get_future().share(); }
    void holdStop() { devices.cameraStop = stopping.get_future().share(); }
    /// Once or more often.
    static void release(std::promise<void>& promise) {
        try {
            promise.set_value();
        } catch (const std::future_error&) {
        }
    }
    QCoro::Task<> switchTask(bool on, const char* identifier = "chosen") {
        return controller.setCameraPreview(on, identifier);
    }
    bool cameraEnds() {
        return clock.runUntil([this] { return !devices.camera.running(); });
    }

    std::promise<void> opening;
    std::promise<void> stopping;
};

TEST_F(CameraPreview, SwitchedOffWhileItOpensStaysOff) {
    holdOpening();
    auto on = switchTask(true);
    auto off = switchTask(false);
    release(opening);
    QCoro::waitFor(on);
    EXPECT_TRUE(off.isReady());
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_TRUE(cameraEnds());
    EXPECT_EQ(devices.camera.starts(), 1);
    EXPECT_TRUE(presenter.shown.empty());
}

TEST_F(CameraPreview, SwitchedOnTwiceOpensOneCamera) {
    holdOpening();
    auto first = switchTask(true);
    auto second = switchTask(true);
    release(opening);
    QCoro::waitFor(first);
    QCoro::waitFor(second);
    EXPECT_TRUE(controller.hasCameraPreview());
    EXPECT_EQ(devices.camera.starts(), 1);
    EXPECT_EQ(presenter.shown, std::vector<std::string>{"camera"});
}

TEST_F(CameraPreview, SwitchedOffAndOnWhileItOpensIsOn) {
    holdOpening();
    auto first = switchTask(true);
    QCoro::waitFor(switchTask(false));
    QCoro::waitFor(switchTask(true));
    release(opening);
    QCoro::waitFor(first);
    EXPECT_TRUE(controller.hasCameraPreview());
    EXPECT_EQ(devices.camera.starts(), 1);
}

TEST_F(CameraPreview, TheDeviceAskedForLastIsTheOneThatRuns) {
    holdOpening();
    auto first = switchTask(true, "first");
    QCoro::waitFor(switchTask(true, "second"));
    release(opening);
    QCoro::waitFor(first);
    EXPECT_TRUE(controller.hasCameraPreview());
    EXPECT_EQ(devices.askedCamera, "second");
    EXPECT_EQ(presenter.shown, std::vector<std::string>{"camera"});
}

TEST_F(CameraPreview, LeftByAnAgentWhileItOpensItIsLetGo) {
    startForAgent();
    auto stopped = controller.stopForAgent();
    ASSERT_TRUE(clock.runUntil([this] { return controller.state() == State::idle; }));
    QCoro::waitFor(stopped);
    holdOpening();
    auto on = switchTask(true);
    preferences.libraryFolder = folder.path() / "another";  // two in one second have the same name
    startForAgent();
    release(opening);
    QCoro::waitFor(on);
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_TRUE(cameraEnds());
    stop();
}

TEST_F(CameraPreview, ThatComesTooLateForTheRecordingIsLetGo) {
    holdOpening();
    auto preview = switchTask(true);
    startedBundle();
    release(opening);
    QCoro::waitFor(preview);
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_TRUE(cameraEnds());
    stop();
}

TEST_F(CameraPreview, ThatIsStillOpeningIsTheRecordingsCamera) {
    holdOpening();
    preferences.captureWebcam = true;
    auto preview = switchTask(true);
    auto recording = startTask();
    release(opening);
    const TakeBundle bundle{
        std::get<RecordingController::Started>(throughCountdown(std::move(recording))).bundle};
    EXPECT_EQ(devices.camera.starts(), 1);
    stop();
    EXPECT_TRUE(bundle.hasWebcam());
}

TEST_F(CameraPreview, IsLetGoInTheBackgroundOfAStart) {
    holdStop();
    setPreview(true);
    startedBundle();
    EXPECT_TRUE(devices.camera.running()) << "it takes its time";
    EXPECT_EQ(presenter.shown, (std::vector<std::string>{"camera", "no camera"}));
    release(stopping);
    EXPECT_TRUE(cameraEnds());
    stop();
}

TEST_F(CameraPreview, IsLetGoInTheBackgroundWhenAnAgentLeaves) {
    startForAgent();
    controller.stopForAgent();
    ASSERT_TRUE(clock.runUntil([this] { return controller.state() == State::idle; }));
    EXPECT_FALSE(controller.hasCameraPreview());
}

TEST_F(CameraPreview, IsStoppedBeforeTheSameDeviceIsOpenedAnew) {
    holdStop();
    setPreview(true);
    setPreview(false);
    devices.cameraStop = {};
    preferences.captureWebcam = true;
    auto recording = startTask();
    ASSERT_TRUE(clock.runUntilSomebodyWaits(4s));
    EXPECT_EQ(devices.camera.starts(), 1);
    release(stopping);
    const auto outcome = throughCountdown(std::move(recording));
    EXPECT_TRUE(std::holds_alternative<RecordingController::Started>(outcome));
    EXPECT_EQ(devices.camera.starts(), 2);
    stop();
}

TEST_F(CameraPreview, ThatNeverEndsHoldsTheNextOneUpForFourSecondsAtMost) {
    holdStop();
    setPreview(true);
    setPreview(false);
    devices.cameraStop = {};
    auto preview = switchTask(true);
    ASSERT_TRUE(clock.runUntilSomebodyWaits(4s));
    clock.advance(3999ms);
    EXPECT_EQ(devices.camera.starts(), 1);
    clock.advance(1ms);
    QCoro::waitFor(preview);
    EXPECT_EQ(devices.camera.starts(), 2);
    release(stopping);
}

TEST_F(CameraPreview, ThatIsLetGoEndsBeforeItsController) {
    holdStop();
    {
        RecordingController shortLived{platform, devices, presenter, permissions, clock};
        QCoro::waitFor(shortLived.setCameraPreview(true, "chosen"));
        QCoro::waitFor(shortLived.setCameraPreview(false, "chosen"));
        EXPECT_TRUE(devices.camera.running());
        release(stopping);
    }
    EXPECT_FALSE(devices.camera.running());
}

TEST_F(CameraPreview, WithoutPermissionNoCameraIsOpened) {
    except({{Permission::camera, PermissionStatus::denied}});
    const LogLines lines;
    setPreview(true);
    EXPECT_FALSE(controller.hasCameraPreview());
    EXPECT_EQ(devices.camera.starts(), 0);
    EXPECT_TRUE(lines.contains(QtCriticalMsg, std::string("Camera preview unavailable: ") +
                                                  CaptureError::cameraNotAuthorized().what()));
}

}  // namespace
}  // namespace tessaloom::test
