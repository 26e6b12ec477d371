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

constexpr std::uint32_t green = 0x20A040;

/// Several waits for the server may follow each other, each with its limit.
constexpr auto patience = 40s;

/// `tessaloom record` on an X server that dies or hangs.
class UnresponsiveServer : public ::testing::Test {
  protected:
    UnresponsiveServer() {
        ChildProcess xsetroot({"xsetroot", "-solid", "#20a040"}, desktop.environment());
        EXPECT_EQ(xsetroot.waitForExit(5s), 0) << xsetroot.errors();
    }
    ~UnresponsiveServer() override { desktop.server().signal(SIGCONT); }

    void record(const std::vector<std::string>& arguments) {
        std::vector<std::string> command{TESSALOOM_PROGRAM, "record", "--no-microphone", "--no-system-audio"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        program.emplace(command, programEnvironment(desktop.environment(), library.path()));
    }
    /// The countdown or the selection of an area.
    void waitForWindow() {
        ASSERT_TRUE(waitUntil([&] { return screenColorAt(*injector, 320, 170) != green; }))
            << program->errors();
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
    record({"--countdown", "30"});
    waitForWindow();
    desktop.server().signal(SIGKILL);
    EXPECT_EQ(program->waitForExit(10s), 1);
    EXPECT_EQ(program->output(), "");
    EXPECT_NE(
        program->errors().find("tessaloom: The connection to the X server was lost. Nothing was recorded"),
        std::string::npos)
        << program->errors();
    expectUnfinishedBundle();
}

TEST_F(UnresponsiveServer, ThatHangsFromTheStartFailsTheRecording) {
    desktop.server().signal(SIGSTOP);
    record({"--countdown", "0"});
    EXPECT_EQ(program->waitForExit(patience), 1) << program->errors();
    EXPECT_NE(program->errors().find("The X server doesn't answer"), std::string::npos) << program->errors();
    EXPECT_TRUE(isWithoutRecordings(library.path()));
}

TEST_F(UnresponsiveServer, ThatHangsAsTheCountdownEndsFailsTheRecording) {
    record({"--countdown", "1"});
    waitForWindow();
    desktop.server().signal(SIGSTOP);
    EXPECT_EQ(program->waitForExit(patience), 1) << program->errors();
    EXPECT_NE(program->errors().find("The X server doesn't answer"), std::string::npos) << program->errors();
    expectUnfinishedBundle();
}

TEST_F(UnresponsiveServer, ThatHangsDuringTheCountdownLetsCtrlCEndIt) {
    record({"--countdown", "30"});
    waitForWindow();
    desktop.server().signal(SIGSTOP);
    std::this_thread::sleep_for(2s);  // the countdown's next number waits for the server
    program->signal(SIGINT);
    EXPECT_TRUE(program->waitForExit(patience)) << program->errors();
    EXPECT_EQ(program->output(), "");
}

TEST_F(UnresponsiveServer, ThatHangsWhileAnAreaIsSelectedLetsCtrlCEndIt) {
    record({"--area", "select"});
    waitForWindow();
    injector->moveTo({100, 100});
    injector->press(1);
    injector->moveTo({200, 200});
    desktop.server().signal(SIGSTOP);
    std::this_thread::sleep_for(500ms);
    program->signal(SIGINT);
    EXPECT_TRUE(program->waitForExit(patience)) << program->errors();
    EXPECT_EQ(program->output(), "");
}

TEST_F(UnresponsiveServer, ThatDiesWhileAnAreaIsSelectedFailsTheRecording) {
    record({"--area", "select"});
    waitForWindow();
    desktop.server().signal(SIGKILL);
    EXPECT_EQ(program->waitForExit(10s), 1);
    EXPECT_NE(program->errors().find("The connection to the X server was lost."), std::string::npos)
        << program->errors();
    EXPECT_TRUE(isWithoutRecordings(library.path()));
}

TEST_F(UnresponsiveServer, ThatHangsWhileRecordingDoesNotHoldUpTheStop) {
    record({"--countdown", "0"});
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
