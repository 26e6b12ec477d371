// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <csignal>
#include <thread>

#include "desktop/DesktopRecording.h"
#include "desktop/ScreenPicture.h"
#include "media/MovieReader.h"
#include "support/XInjector.h"
#include "take/RecordingLibrary.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

/// Several waits for the server may follow each other, each with its limit.
constexpr auto patience = 40s;

/// `tessaloom record` on an X server that dies or hangs.
class UnresponsiveServer : public ::testing::Test {
  protected:
    ~UnresponsiveServer() override { desktop.server().signal(SIGCONT); }

    void record(const std::string& countdown) {
        program.emplace(std::vector<std::string>{TESSALOOM_PROGRAM, "record", "--countdown", countdown,
                                                 "--no-microphone", "--no-system-audio"},
                        programEnvironment(desktop.environment(), library.path()));
    }
    void waitForCountdown() {
        ASSERT_TRUE(waitUntil([&] { return screenColorAt(*injector, 320, 170) != 0; })) << program->errors();
    }
    /// A failed start leaves its folder, with nothing recorded in it.
    void expectUnfinishedBundle() const {
        const auto bundles = RecordingLibrary(library.path()).recentBundles(10);
        ASSERT_EQ(bundles.size(), 1U);
        EXPECT_TRUE(bundles.front().readLog().cursorSamples.empty());
        EXPECT_FALSE(std::filesystem::exists(bundles.front().file(TakeBundle::screenFile)));
    }

    VirtualDesktop desktop{640, 480};
    std::optional<XInjector> injector{std::in_place, desktop.displayName()};
    const TemporaryFolder library;
    std::optional<ChildProcess> program;
};

TEST_F(UnresponsiveServer, ThatDiesDuringTheCountdownFailsTheRecording) {
    record("30");
    waitForCountdown();
    desktop.server().signal(SIGKILL);
    EXPECT_EQ(program->waitForExit(10s), 1);
    EXPECT_EQ(program->output(), "");
    EXPECT_NE(program->errors().find("X"), std::string::npos) << program->errors();
    expectUnfinishedBundle();
}

TEST_F(UnresponsiveServer, ThatHangsFromTheStartFailsTheRecording) {
    desktop.server().signal(SIGSTOP);
    record("0");
    EXPECT_EQ(program->waitForExit(patience), 1) << program->errors();
    EXPECT_NE(program->errors().find("The X server doesn't answer"), std::string::npos) << program->errors();
    EXPECT_TRUE(std::filesystem::is_empty(library.path()));
}

TEST_F(UnresponsiveServer, ThatHangsAsTheCountdownEndsFailsTheRecording) {
    record("1");
    waitForCountdown();
    desktop.server().signal(SIGSTOP);
    EXPECT_EQ(program->waitForExit(patience), 1) << program->errors();
    EXPECT_NE(program->errors().find("The X server doesn't answer"), std::string::npos) << program->errors();
    expectUnfinishedBundle();
}

TEST_F(UnresponsiveServer, ThatHangsWhileRecordingDoesNotHoldUpTheStop) {
    record("0");
    ASSERT_TRUE(waitUntil([&] { return program->errors().find("Recording started") != std::string::npos; }))
        << program->errors();
    std::this_thread::sleep_for(1s);
    desktop.server().signal(SIGSTOP);
    program->signal(SIGINT);
    EXPECT_EQ(program->waitForExit(patience), 0) << program->errors();
    const std::string output = program->output();
    const TakeBundle bundle{output.substr(0, output.find('\n'))};
    EXPECT_GT(logDuration(bundle.readLog()), 0.7);
    EXPECT_GT(MovieReader::scanDuration(bundle.file(TakeBundle::screenFile)), 0.7);
}

}  // namespace
}  // namespace tessaloom::test
