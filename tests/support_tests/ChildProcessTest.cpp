// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ChildProcess.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <system_error>

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

ChildProcess shell(const std::string& script, const Environment& environment = currentEnvironment()) {
    return ChildProcess({"sh", "-c", script}, environment);
}

TEST(ChildProcess, GivesOutputErrorsAndStatusApart) {
    ChildProcess child = shell("echo out; echo err >&2; exit 7");
    EXPECT_EQ(child.waitForExit(5s), 7);
    EXPECT_EQ(child.output(), "out\n");
    EXPECT_EQ(child.errors(), "err\n");
}

TEST(ChildProcess, SeesOnlyTheEnvironmentItWasGiven) {
    Environment environment;
    environment["GREETING"] = "hello";
    ChildProcess child({"/usr/bin/env"}, environment);
    ASSERT_EQ(child.waitForExit(5s), 0);
    EXPECT_EQ(child.output(), "GREETING=hello\n");
}

TEST(ChildProcess, MoreOutputThanAPipeHoldsDoesNotBlockIt) {
    ChildProcess child = shell("head -c 300000 /dev/zero");
    ASSERT_EQ(child.waitForExit(5s), 0);
    EXPECT_EQ(child.output().size(), 300'000U);
}

TEST(ChildProcess, WaitsAreBounded) {
    ChildProcess child = shell("sleep 60");
    EXPECT_EQ(child.waitForExit(20ms), std::nullopt);
    EXPECT_FALSE(child.waitForOutput("never", 20ms));
    EXPECT_TRUE(child.running());
}

TEST(ChildProcess, ReportsTheSignalThatEndedIt) {
    ChildProcess child = shell("sleep 60");
    child.signal(SIGKILL);
    EXPECT_EQ(child.waitForExit(5s), 128 + SIGKILL);
    EXPECT_FALSE(child.running());
}

TEST(ChildProcess, OutputIsFoundWhileItStillRuns) {
    ChildProcess child = shell("echo ready; sleep 60");
    EXPECT_TRUE(child.waitForOutput("ready\n", 5s));
    EXPECT_TRUE(child.running());
}

TEST(ChildProcess, EndsWithItsObject) {
    pid_t id = 0;
    {
        ChildProcess child = shell("sleep 60");
        id = child.id();
        EXPECT_EQ(kill(id, 0), 0);
    }
    EXPECT_NE(kill(id, 0), 0);
}

TEST(ChildProcess, AMissingProgramIsAnError) {
    EXPECT_THROW(ChildProcess({"no-such-program-here"}, currentEnvironment()), std::system_error);
}

}  // namespace
}  // namespace tessaloom::test
