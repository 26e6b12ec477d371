// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/PeakLimiter.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/SoundMaker.h"

namespace tessaloom {
namespace {

std::vector<StereoSample> limited(const test::Sound& sound) {
    PeakLimiter limiter(std::make_unique<test::MonoSource>(sound));
    return test::pull(limiter, static_cast<std::int64_t>(sound.size()));
}

TEST(PeakLimiter, WhatStaysWithinFullScalePassesToTheBit) {
    test::Sound sound = test::sine(1, 333, 1);
    sound[100] = 1;
    sound[200] = -1;
    const auto result = limited(sound);
    for (std::size_t i = 0; i < sound.size(); ++i)
        ASSERT_EQ(result[i], (StereoSample{sound[i], sound[i]})) << i;
}

TEST(PeakLimiter, NothingEverExceedsFullScale) {
    test::Sound sound = test::sine(2, 60, 3);
    for (std::size_t i = 0; i < sound.size(); i += 1237)
        sound[i] = i % 2 == 0 ? 9.0F : -4.0F;
    const auto result = limited(sound);
    EXPECT_LE(test::peakBetween(result, 0, 2), 1.0001);
    EXPECT_GT(test::peakBetween(result, 1, 2), 0.5);
}

TEST(PeakLimiter, APeakIsRoundedOffWithoutAClickAndForgotten) {
    test::Sound sound = test::sine(3, 200, 0.5);
    const std::size_t burst = soundRate;
    for (std::size_t i = burst; i < burst + 4410; ++i)
        sound[i] *= 4;
    const auto result = limited(sound);
    EXPECT_LE(test::peakBetween(result, 0, 3), 1.0001);
    // Hardly steeper than full scale at this pitch.
    EXPECT_LT(test::steepestStep(result), 1.25 * 2 * 3.1416 * 200 / soundRate);
    for (std::size_t i = 0; i < burst - 221; ++i)
        ASSERT_EQ(result[i].left, sound[i]) << i;
    for (std::size_t i = 2 * burst + 4410; i < sound.size(); ++i)
        ASSERT_EQ(result[i].left, sound[i]) << i;
}

}  // namespace
}  // namespace tessaloom
