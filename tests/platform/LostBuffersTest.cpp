// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/LostBuffers.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr double rate = 48'000;

/// A device's buffers, as a graph's cycles bring them.
class LostBuffersTest : public ::testing::Test {
  protected:
    int bring(double cycleStart, double frames, std::uint32_t driver = 1) {
        return lost.before({.driver = driver, .cycleStart = cycleStart / rate, .length = frames / rate});
    }

    LostBuffers lost;
};

TEST_F(LostBuffersTest, NoneIsMissingWhileOneFollowsTheOther) {
    EXPECT_EQ(bring(5000, 1024), 0);
    EXPECT_EQ(bring(6024, 1024), 0);
    EXPECT_EQ(bring(7048, 1020), 0) << "a resampler gives a little more or less";
    EXPECT_EQ(bring(8072, 1028), 0);
}

TEST_F(LostBuffersTest, WhatIsLeftOutIsCounted) {
    bring(0, 1024);
    EXPECT_EQ(bring(2048, 1024), 1);
    EXPECT_EQ(bring(2048 + 31 * 1024, 1024), 30);
    EXPECT_EQ(bring(2048 + 32 * 1024, 1024), 0);
}

TEST_F(LostBuffersTest, NoneIsMissingWhenCyclesBecomeShorterOrLonger) {
    bring(0, 1024);
    EXPECT_EQ(bring(1024, 256), 0);
    EXPECT_EQ(bring(1280, 256), 0);
    EXPECT_EQ(bring(1536, 2048), 0);
    EXPECT_EQ(bring(3584, 32), 0);
}

TEST_F(LostBuffersTest, NoneIsMissingWhereTheClockGoesOnByTheNextCycle) {
    bring(0, 256);
    EXPECT_EQ(bring(1024, 1024), 0);
    EXPECT_EQ(bring(1280, 256), 0);
}

TEST_F(LostBuffersTest, WhatIsLeftOutWhenCyclesBecomeShorterIsCounted) {
    bring(0, 1024);
    EXPECT_EQ(bring(1024 + 4 * 256, 256), 4);
}

TEST_F(LostBuffersTest, AnotherClockTellsNothingOfWhatIsMissing) {
    bring(0, 1024);
    EXPECT_EQ(bring(1e9, 1024, 2), 0);
    EXPECT_EQ(bring(1e9 + 1024, 1024, 2), 0);
    EXPECT_EQ(bring(5000, 1024, 1), 0);
}

TEST_F(LostBuffersTest, AfterANewBeginningNoneIsMissing) {
    bring(0, 1024);
    lost.restart();
    EXPECT_EQ(bring(480'000, 1024), 0);
}

}  // namespace
}  // namespace tessaloom
