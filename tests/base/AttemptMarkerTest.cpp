// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/AttemptMarker.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

namespace fs = std::filesystem;

class AttemptMarkerTest : public ::testing::Test {
  protected:
    test::TemporaryFolder folder_;
    fs::path file_ = folder_.path() / "state" / "tessaloom" / "driver.attempt";
};

TEST_F(AttemptMarkerTest, StandsAsLongAsTheAttemptAndOnlyOnce) {
    {
        const auto attempt = AttemptMarker::place(file_);
        EXPECT_TRUE(attempt);
        EXPECT_TRUE(fs::exists(file_));
        EXPECT_FALSE(AttemptMarker::place(file_));
        EXPECT_TRUE(fs::exists(file_));
    }
    EXPECT_FALSE(fs::exists(file_));
    EXPECT_TRUE(AttemptMarker::place(file_));
}

TEST_F(AttemptMarkerTest, OutlivesAProcessThatDies) {
    const pid_t child = fork();
    if (child == 0) {
        const auto attempt = AttemptMarker::place(file_);
        raise(SIGKILL);
    }
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(fs::exists(file_));
    EXPECT_FALSE(AttemptMarker::place(file_));
}

TEST_F(AttemptMarkerTest, WhereNothingCanBeWrittenNothingIsTried) {
    std::ofstream(folder_.path() / "state") << "no folder";
    EXPECT_FALSE(AttemptMarker::place(file_));
}

}  // namespace
}  // namespace tessaloom
