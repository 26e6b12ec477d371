// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/TimeStretch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "support/SoundMaker.h"

namespace tessaloom {
namespace {

std::unique_ptr<SoundSource> sounding(test::Sound sound) {
    return std::make_unique<test::MonoSource>(std::move(sound));
}

std::vector<StereoSample> stretched(test::Sound sound, double speed) {
    const auto length = std::llround(static_cast<double>(sound.size()) / speed);
    TimeStretch stretch(sounding(std::move(sound)), speed);
    return test::pull(stretch, length);
}

double rms(std::span<const StereoSample> sound) {
    double sum = 0;
    for (const StereoSample sample : sound)
        sum += static_cast<double>(sample.left) * static_cast<double>(sample.left);
    return std::sqrt(sum / static_cast<double>(sound.size()));
}

/// Upward zero crossings a second.
double frequencyOf(std::span<const StereoSample> sound) {
    int crossings = 0;
    for (std::size_t i = 1; i < sound.size(); ++i)
        crossings += sound[i - 1].left < 0 && sound[i].left >= 0 ? 1 : 0;
    return crossings * static_cast<double>(soundRate) / static_cast<double>(sound.size());
}

class TimeStretchAtSpeed : public ::testing::TestWithParam<double> {};

TEST_P(TimeStretchAtSpeed, SoundsSetInWhereTheyBelong) {
    const double speed = GetParam();
    std::mt19937 generator(7);
    std::vector<double> times;
    const double spacing = 0.2 * std::max(speed, 1.0);
    for (double time = 0.1; time < 20; time += spacing + static_cast<double>(generator() % 1000) * 1e-4)
        times.push_back(time);
    const auto found = test::onsets(stretched(test::beeps(20.5, times), speed));
    ASSERT_EQ(found.size(), times.size());
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_NEAR(found[i], times[i] / speed, 0.003) << times[i];
}

TEST_P(TimeStretchAtSpeed, SoundsOverNoiseSetInWhereTheyBelong) {
    const double speed = GetParam();
    std::mt19937 generator(7);
    const std::vector<double> times{0.31, 1.47, 2.82, 4.05};
    test::Sound sound = test::beeps(5, times);
    for (float& value : sound)
        value += static_cast<float>(generator() % 1000) * 5e-5F - 0.025F;
    const auto found = test::onsets(stretched(sound, speed));
    ASSERT_EQ(found.size(), times.size());
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_NEAR(found[i], times[i] / speed, 0.005) << times[i];
}

TEST_P(TimeStretchAtSpeed, PitchAndLevelStay) {
    for (const double frequency : {110.0, 440.0, 3000.0}) {
        const auto sound = stretched(test::sine(10, frequency, 0.5), GetParam());
        const auto middle = std::span(sound).subspan(sound.size() / 10, sound.size() * 8 / 10);
        EXPECT_NEAR(frequencyOf(middle) / frequency, 1, 0.02) << frequency;
        EXPECT_NEAR(rms(middle) / (0.5 / std::numbers::sqrt2), 1, 0.06) << frequency;
        EXPECT_LT(test::peakBetween(sound, 0, 100), 0.501);
    }
}

INSTANTIATE_TEST_SUITE_P(Speeds, TimeStretchAtSpeed, ::testing::Values(0.25, 0.5, 0.8, 1.1, 1.5, 2.0, 3.0));

TEST(TimeStretch, AtNormalSpeedEverySampleStays) {
    std::mt19937 generator(3);
    test::Sound sound(30'000);
    for (float& value : sound)
        value = static_cast<float>(generator() % 1000) * 1e-3F - 0.5F;
    const auto result = stretched(sound, 1);
    for (std::size_t i = 0; i < sound.size(); ++i)
        ASSERT_EQ(result[i].left, sound[i]) << i;
}

TEST(TimeStretch, AnHourLaterEverythingIsStillInItsPlace) {
    constexpr double speed = 1.5;
    constexpr std::int64_t minute = 60 * soundRate;
    TimeStretch stretch(std::make_unique<test::MonoSource>([](std::int64_t position) {
                            const auto phase = static_cast<float>(position % minute);
                            return phase < 2000 ? 0.5F * std::sin(0.14F * phase) : 0.0F;
                        }),
                        speed);
    std::vector<StereoSample> block(40 * soundRate);
    for (int minutes = 0; minutes <= 60; ++minutes) {
        stretch.read(block);
        const auto found = test::onsets(block);
        ASSERT_EQ(found.size(), 1U) << minutes;
        ASSERT_NEAR(found.front(), 0, 0.001) << minutes;
    }
}

TEST(TimeStretch, AbsurdSpeedsEnd) {
    const test::Sound sound = test::sine(1, 440, 0.5);
    for (const double speed : {0.001, 40.0, 1e6, 1e12}) {
        TimeStretch stretch(sounding(sound), speed);
        EXPECT_EQ(test::pull(stretch, 2000).size(), 2000U) << speed;
    }
}

}  // namespace
}  // namespace tessaloom
