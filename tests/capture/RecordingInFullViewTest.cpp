// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"
#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

/// Where this program's own windows would be in the picture.
class RecordingInFullView : public Recording {
  protected:
    RecordingInFullView() {
        devices.hasCamera = true;
        preferences.captureWebcam = true;
        platform.leavesOut = false;
    }
    void expectHiddenInTime(QCoro::Task<RecordingController::StartOutcome> task) {
        ASSERT_TRUE(clock.runUntilSomebodyWaits(120ms));
        EXPECT_EQ(presenter.shown, (std::vector<std::string>{"camera", "no camera"}));
        EXPECT_EQ(presenter.bar, std::vector<std::string>{"hidden"});
        EXPECT_EQ(platform.streamsMade, 0);
        const int asked = platform.timesAskedWhatIsLeftOut;
        clock.advance(119ms);
        EXPECT_EQ(platform.streamsMade, 0);
        clock.advance(1ms);
        EXPECT_TRUE(std::holds_alternative<RecordingController::Started>(QCoro::waitFor(task)));
        EXPECT_EQ(platform.timesAskedWhatIsLeftOut, asked) << "asking takes time";
    }
};

TEST_F(RecordingInFullView, HidesBubbleAndBarWithTheCountdown) {
    preferences.countdownSeconds = 1;
    auto task = startTask();
    for (int slice = 0; slice < 10; ++slice) {
        ASSERT_TRUE(clock.runUntilSomebodyWaits(100ms));
        EXPECT_EQ(presenter.shown, std::vector<std::string>{"camera"}) << "they show as long as they may";
        clock.advance(100ms);
    }
    expectHiddenInTime(std::move(task));
    stop();
    EXPECT_EQ(presenter.bar, (std::vector<std::string>{"hidden", "shown"}));
}

TEST_F(RecordingInFullView, HidesBubbleAndBarAlsoWithoutACountdown) {
    expectHiddenInTime(startTask());
    stop();
}

TEST_F(RecordingInFullView, ShowsTheBarAgainWhenItFails) {
    platform.stream = Script::endsWithoutFrame;
    start();
    EXPECT_EQ(presenter.bar, (std::vector<std::string>{"hidden", "shown"}));
}

TEST_F(RecordingInFullView, LeavesTheBarAwayAfterAnAgents) {
    startForAgent();
    QCoro::waitFor(controller.stopForAgent());
    EXPECT_EQ(presenter.bar.back(), "hidden");
}

}  // namespace
}  // namespace tessaloom::test
