// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace tessaloom {

/// Samples a second of all sound that is mixed and exported.
inline constexpr int soundRate = 44'100;

/// The sample nearest to a time. Times that only a damaged file can ask for are held within 30 years.
inline std::int64_t soundPosition(double seconds) {
    constexpr double farthest = 1e9;
    return std::llround(std::clamp(seconds, -farthest, farthest) * soundRate);
}

/// One moment of sound; full scale is -1 to 1.
struct StereoSample {
    float left = 0;
    float right = 0;

    StereoSample& operator+=(StereoSample other) {
        left += other.left;
        right += other.right;
        return *this;
    }
    friend StereoSample operator+(StereoSample a, StereoSample b) { return a += b; }
    friend StereoSample operator*(StereoSample sample, float gain) {
        return {sample.left * gain, sample.right * gain};
    }
    bool operator==(const StereoSample&) const = default;
};
static_assert(sizeof(StereoSample) == 2 * sizeof(float));

/// The same samples as an encoder takes them: left, right, left, …
inline std::span<const float> interleaved(std::span<const StereoSample> sound) {
    return {sound.empty() ? nullptr : &sound.front().left, 2 * sound.size()};
}

}  // namespace tessaloom
