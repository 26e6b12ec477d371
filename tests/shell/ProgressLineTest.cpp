// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ProgressLine.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tessaloom {
namespace {

using Seconds = std::chrono::duration<double>;

TEST(TimeLeftTest, ThePaceSoFarGoesOn) {
    EXPECT_EQ(timeLeft(0.5, Seconds(10)), "10s left");
    EXPECT_EQ(timeLeft(0.25, Seconds(10)), "30s left");
    EXPECT_EQ(timeLeft(0.1, Seconds(60)), "540s left");
}

TEST(TimeLeftTest, NothingIsSaidBeforeThereIsEnoughToJudgeBy) {
    EXPECT_EQ(timeLeft(0, Seconds(10)), std::nullopt);
    EXPECT_EQ(timeLeft(0.02, Seconds(10)), std::nullopt);
    EXPECT_EQ(timeLeft(0.021, Seconds(1)), "47s left");
    EXPECT_EQ(timeLeft(std::nan(""), Seconds(1)), std::nullopt);
}

TEST(TimeLeftTest, TheLastMomentsAreNotCounted) {
    EXPECT_EQ(timeLeft(0.5, Seconds(1.5)), "almost done");
    EXPECT_EQ(timeLeft(0.5, Seconds(1.6)), "2s left");
    EXPECT_EQ(timeLeft(1, Seconds(100)), "almost done");
}

TEST(ProgressLineTest, NothingIsShownWhereThereIsNoTerminal) {
    testing::internal::CaptureStderr();
    {
        ProgressLine line("Exporting");
        line.show(0.5);
        line.show("Recording starts in 3 …");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace tessaloom
