// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include "capture/RecordingFixture.h"

namespace tessaloom::test {
namespace {

class AgentRecording : public Recording {};

TEST_F(AgentRecording, AnAgentsOptionsStandWhateverTheUserPrefers) {
    devices.hasMicrophone = devices.hasSystemAudio = true;
    preferences.captureMicrophone = true;
    preferences.captureSystemAudio = false;
    startForAgent({.captureMicrophone = false, .captureSystemAudio = true});
    EXPECT_EQ(devices.microphone.starts(), 0);
    EXPECT_EQ(devices.systemAudio.starts(), 1);
    stop();
}

TEST_F(AgentRecording, AnAgentStopsWithoutAnEditor) {
    devices.hasCamera = true;
    const auto started = std::get<RecordingController::Started>(startForAgent());
    EXPECT_EQ(QCoro::waitFor(controller.stopForAgent()), started.bundle);
    EXPECT_TRUE(presenter.opened.empty());
    EXPECT_EQ(presenter.bar, (std::vector<std::string>{"hidden", "hidden"})) << "at its start and its end";
    EXPECT_EQ(QCoro::waitFor(controller.stopForAgent()), std::nullopt) << "nothing is going on any more";
}

TEST_F(AgentRecording, AnAgentIsToldThatARecordingIsGoingOn) {
    startedBundle();
    const auto result = startForAgent();
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(result));
    EXPECT_EQ(std::get<RecordingController::Failed>(result).message,
              "Tessaloom is already recording. Stop that recording first.");
    EXPECT_EQ(controller.state(), State::recording);
    EXPECT_TRUE(presenter.bar.empty());
    stop();
}

TEST_F(AgentRecording, AnAgentHearsWhyItsStartFailed) {
    platform.stream = Script::endsWithoutFrame;
    const auto result = startForAgent();
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(result));
    EXPECT_EQ(std::get<RecordingController::Failed>(result).message, CaptureError::noFrames().what());
    EXPECT_TRUE(presenter.told.empty());
}

TEST_F(AgentRecording, AnAgentHearsThatItsStartWasCancelled) {
    cancel.request_stop();
    const auto result = startForAgent();
    ASSERT_TRUE(std::holds_alternative<RecordingController::Failed>(result));
    EXPECT_EQ(std::get<RecordingController::Failed>(result).message,
              "The recording was cancelled before it started.");
    EXPECT_EQ(presenter.bar, std::vector<std::string>{"hidden"}) << "it stays off";
}

TEST_F(AgentRecording, AnAgentsEndsAfterTenMinutes) {
    startForAgent();
    const LogLines lines;
    constexpr auto limitLine = "Agent recording reached its time limit; stopping it";
    clock.advance(599'999ms);
    EXPECT_EQ(controller.state(), State::recording);
    EXPECT_FALSE(lines.contains(limitLine));
    clock.advance(1ms);
    EXPECT_TRUE(clock.runUntil([this] { return controller.state() == State::idle; }));
    EXPECT_TRUE(lines.contains(QtInfoMsg, limitLine));
    EXPECT_TRUE(presenter.opened.empty());
}

TEST_F(AgentRecording, AUsersHasNoTimeLimit) {
    startedBundle();
    clock.advance(1h);
    EXPECT_EQ(controller.state(), State::recording);
    stop();
}

TEST_F(AgentRecording, TheLimitOfAnAgentsOldRecordingIsNotTheNewOnes) {
    startForAgent();
    clock.advance(500s);
    QCoro::waitFor(controller.stopForAgent());
    preferences.libraryFolder = folder.path() / "another";  // two in one second have the same name
    startForAgent();
    clock.advance(200s);
    EXPECT_EQ(controller.state(), State::recording);
    clock.advance(400s);
    EXPECT_TRUE(clock.runUntil([this] { return controller.state() == State::idle; }));
}

}  // namespace
}  // namespace tessaloom::test
