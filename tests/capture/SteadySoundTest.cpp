// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SteadySound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace tessaloom {
namespace {

constexpr double start = 1000.0;
constexpr int outputRate = 44'100;
constexpr double secondsPerMinute = 60;

/// A beep of 50 ms at each full second of the host's clock, silence between.
float beepAt(double hostTime) {
    const double phase = hostTime - std::floor(hostTime);
    return phase < 0.05 ? static_cast<float>(0.5 * std::cos(2 * std::numbers::pi * 1000 * phase)) : 0.0F;
}

/// A device in a world of beeps, with a clock that runs fast by `clockError` and time stamps that tremble.
class Device {
  public:
    explicit Device(double clockError, double tremble = 0)
        : rate_(48'000 * (1 + clockError)), tremble_(-tremble, tremble) {}

    SoundChunk next(std::size_t frames = 1024) {
        const double time = now_ + tremble_(random_);
        samples_.clear();
        for (std::size_t i = 0; i < frames; ++i)
            samples_.push_back(beepAt(now_ + static_cast<double>(i) / rate_));
        now_ += static_cast<double>(frames) / rate_;
        return {time, samples_};
    }
    double now() const { return now_; }
    void skipTo(double time) { now_ = time; }

  private:
    double rate_;
    double now_ = start;
    std::uniform_real_distribution<double> tremble_;
    std::mt19937 random_{1};
    std::vector<float> samples_;
};

struct Stream {
    std::vector<float> samples;
    SteadySound sound{{48'000, 1}, outputRate, start, [this](std::span<const float> more) {
                          samples.insert(samples.end(), more.begin(), more.end());
                      }};

    void recordUntil(Device& device, double time) {
        while (device.now() < time)
            sound.append(device.next());
    }
    /// The host time at which the beep of that full second begins.
    double beepNear(double second) const {
        for (double time = second - 0.4; time < second + 0.4; time += 1.0 / outputRate) {
            const auto index = static_cast<std::size_t>(std::max(0.0, (time - start) * outputRate));
            if (index < samples.size() && std::abs(samples[index]) > 0.25F) return time;
        }
        return 0;
    }
    double length() const { return static_cast<double>(samples.size()) / outputRate; }
};

class DeviceClock : public ::testing::TestWithParam<double> {};

TEST_P(DeviceClock, IsFollowedSoThatBeepsStandAtTheirHostTimes) {
    Device device(GetParam());
    Stream stream;
    stream.recordUntil(device, start + secondsPerMinute);
    for (int second = 1; second < 60; ++second)
        EXPECT_NEAR(stream.beepNear(start + second), start + second, 0.004);
    // Once the error is known almost nothing is left of it.
    EXPECT_NEAR(stream.beepNear(start + 59), start + 59, 0.001);
    EXPECT_NEAR(stream.length(), device.now() - start, 0.001);
}

INSTANTIATE_TEST_SUITE_P(PartsPerMillion, DeviceClock, ::testing::Values(0.0, 500e-6, 5000e-6, -5000e-6),
                         [](const auto& error) {
                             const auto parts = static_cast<int>(std::lround(error.param * 1e6));
                             return (parts < 0 ? "slow" : "fast") + std::to_string(std::abs(parts));
                         });

TEST(SteadySound, TremblingTimeStampsHardlyMoveIt) {
    Device device(0.0005, 0.002);
    Stream stream;
    stream.recordUntil(device, start + 20);
    for (int second = 1; second < 20; ++second)
        EXPECT_NEAR(stream.beepNear(start + second), start + second, 0.002);
}

TEST(SteadySound, AGapIsSilenceOfItsLength) {
    Device device(0.0005);
    Stream stream;
    stream.recordUntil(device, start + 4.5);
    device.skipTo(start + 9.5);
    stream.recordUntil(device, start + 12.5);
    for (const double second : {4, 10, 11, 12})
        EXPECT_NEAR(stream.beepNear(start + second), start + second, 0.003);
    for (const double second : {5, 6, 7, 8, 9})
        EXPECT_EQ(stream.beepNear(start + second), 0) << second;
}

TEST(SteadySound, SilencePaddedMeanwhileIsNotDoubled) {
    Device device(0);
    Stream stream;
    stream.recordUntil(device, start + 2.5);
    stream.sound.padTo(start + 5.2);
    device.skipTo(start + 4.8);  // what comes late, for before that, is left out
    stream.recordUntil(device, start + 7.5);
    EXPECT_EQ(stream.beepNear(start + 5), 0);
    for (const double second : {2, 6, 7})
        EXPECT_NEAR(stream.beepNear(start + second), start + second, 0.003);
    EXPECT_NEAR(stream.length(), device.now() - start, 0.003);
}

TEST(SteadySound, BeginsAtItsStartWhetherTheFirstChunkIsLateOrEarly) {
    for (const double first : {start + 0.013, start - 0.013, start + 0.7, start - 0.7}) {
        Device device(0);
        device.skipTo(first);
        Stream stream;
        stream.recordUntil(device, start + 3);
        EXPECT_NEAR(stream.beepNear(start + 1), start + 1, 0.0005) << first;
    }
}

TEST(SteadySound, KeepsChannelsApart) {
    std::vector<float> left;
    std::vector<float> right;
    SteadySound sound({48'000, 2}, 48'000, start, [&](std::span<const float> samples) {
        for (std::size_t i = 0; i < samples.size(); i += 2) {
            left.push_back(samples[i]);
            right.push_back(samples[i + 1]);
        }
    });
    std::vector<float> chunk;
    for (int i = 0; i < 4800; ++i)
        chunk.insert(chunk.end(), {0.5F, -0.25F});
    sound.append({start, chunk});
    ASSERT_GT(left.size(), 4000U);
    EXPECT_NEAR(left[2000], 0.5F, 0.01F);
    EXPECT_NEAR(right[2000], -0.25F, 0.01F);
}

}  // namespace
}  // namespace tessaloom
