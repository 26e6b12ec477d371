// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/ScreenCaptureEngine.h"

#include <gtest/gtest.h>

#include "base/HostClock.h"
#include "capture/ScriptedDevices.h"
#include "capture/ScriptedPlatform.h"
#include "media/MovieReader.h"
#include "support/LogLines.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;
using Script = test::ScriptedStream::Script;

class ScreenCapture : public ::testing::Test {
  protected:
    std::unique_ptr<ScreenCaptureEngine> start(
        Script script, ScreenCaptureEngine::StoppedHandler onStopped = [](auto&) {},
        std::unique_ptr<LiveSoundSource> systemAudio = nullptr) {
        platform.stream = script;
        return ScreenCaptureEngine::start(platform, {{{}, {0, 0, 64, 48}, 1.0}, {}, {}},
                                          std::move(systemAudio), file, std::move(onStopped));
    }

    test::ScriptedPlatform platform;
    test::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "screen.mov";
};

TEST_F(ScreenCapture, TheFirstFrameIsTheOriginAndTheLastLastsUntilTheStop) {
    const double before = HostClock::seconds();
    const auto engine = start(Script::oneFrame);
    QCoro::waitFor(engine->waitForOrigin(5s));
    ASSERT_TRUE(engine->started());
    EXPECT_GE(engine->timelineOrigin(), before);
    QCoro::waitFor(engine->stop());
    const double passed = HostClock::seconds() - engine->timelineOrigin();
    EXPECT_LE(MovieReader::scanDuration(file), passed + 1.0 / 60.0);
    EXPECT_GT(MovieReader::scanDuration(file), 0);
}

TEST_F(ScreenCapture, WhatWasRecordedBelongsToTheEngineUntilItEnds) {
    const auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> held = token;
    auto engine = start(Script::oneFrame, [token](auto&) {});
    const long owners = token.use_count();
    QCoro::waitFor(engine->waitForOrigin(5s));
    QCoro::waitFor(engine->stop());
    EXPECT_EQ(token.use_count(), owners);
    engine.reset();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(ScreenCapture, SystemAudioThatGotLostIsLoggedOnceAtTheEnd) {
    const test::LogLines log;
    test::SourceControl<SoundChunk> speakers;
    const auto engine = start(
        Script::oneFrame, [](auto&) {},
        std::make_unique<test::ScriptedSound>(speakers, SoundFormat{48'000, 2}));
    QCoro::waitFor(engine->waitForOrigin(5s));
    const std::vector<float> samples(960);
    for (const int lost : {0, 3, 0, 4})
        speakers.deliver({HostClock::seconds(), samples, lost});
    EXPECT_FALSE(log.contains("System audio dropped"));
    QCoro::waitFor(engine->stop());
    EXPECT_EQ(log.count("ScreenCapture: System audio dropped 7 buffers; audio may drift"), 1);
}

TEST_F(ScreenCapture, WithoutAFrameNoFileIsLeft) {
    const auto engine = start(Script::nothing);
    QCoro::waitFor(engine->waitForOrigin(20ms));
    EXPECT_FALSE(engine->started());
    QCoro::waitFor(engine->stop());
    EXPECT_EQ(engine->timelineOrigin(), 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ScreenCapture, FramesThatAreNotCompleteStartNothing) {
    const auto engine = start(Script::incompleteFrames);
    QCoro::waitFor(engine->waitForOrigin(50ms));
    EXPECT_FALSE(engine->started());
    QCoro::waitFor(engine->stop());
    EXPECT_EQ(engine->timelineOrigin(), 0);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(ScreenCapture, TheFirstCompleteFrameIsTheOriginWhateverCameBefore) {
    const double before = HostClock::seconds();
    const auto engine = start(Script::incompleteThenOneFrame);
    QCoro::waitFor(engine->waitForOrigin(5s));
    EXPECT_GE(engine->timelineOrigin(), before);
    QCoro::waitFor(engine->stop());
    EXPECT_LT(MovieReader::scanDuration(file), 30);
}

TEST_F(ScreenCapture, AStreamThatEndsByItselfEndsTheWait) {
    std::string reason;
    const auto engine = start(Script::endsWithoutFrame, [&](const std::string& why) { reason = why; });
    const double before = HostClock::seconds();
    QCoro::waitFor(engine->waitForOrigin(8s));
    EXPECT_LT(HostClock::seconds() - before, 4);
    EXPECT_FALSE(engine->started());
    QCoro::waitFor(engine->stop());
    EXPECT_EQ(reason, "The script ended.");
}

}  // namespace
}  // namespace tessaloom
