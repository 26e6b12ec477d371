// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingController.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <thread>

#include "capture/CaptureError.h"
#include "capture/ScriptedPlatform.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using Script = test::ScriptedStream::Script;
using State = RecordingController::State;

class SilentPresenter final : public RecordingPresenter {
  public:
    void showCountdown(int) override {}
    void hideCountdown() override {}
};

class Recording : public ::testing::Test {
  protected:
    RecordingController::StartOutcome start(int countdown = 0) {
        const RecordingPreferences preferences{countdown, folder.path() / "library"};
        return QCoro::waitFor(controller.start(MainDisplaySource{}, preferences, cancel.get_token()));
    }
    TakeBundle startedBundle() { return {std::get<RecordingController::Started>(start()).bundle}; }
    void stop() { QCoro::waitFor(controller.stop()); }
    std::size_t bundleCount() const {
        const std::filesystem::directory_iterator entries(folder.path() / "library");
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }

    test::ScriptedPlatform platform;
    test::TemporaryFolder folder;
    SilentPresenter presenter;
    std::stop_source cancel;
    RecordingController controller{platform, presenter};
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
    QTimer::singleShot(50, [this] { cancel.request_stop(); });
    EXPECT_TRUE(std::holds_alternative<RecordingController::Cancelled>(start(3)));
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

}  // namespace
}  // namespace tessaloom
