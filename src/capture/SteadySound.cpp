// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/SteadySound.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tessaloom {
namespace {

/// More than a clock drifts between two corrections or a time stamp trembles: something is missing or
/// doubled.
constexpr double gapLimit = 0.020;

// A controller with two real poles at 0.5/s: it settles in a few seconds without overshooting, and a tremble
// of a millisecond in the time stamps bends the pitch by a thousandth at most.
constexpr double proportionalGain = 1.0;  // per second
constexpr double integralGain = 0.25;     // per second squared

/// Cheap devices are off by a few hundred parts in a million, broken ones by a few thousand.
constexpr double greatestStretch = 0.02;

constexpr std::size_t silenceBlock = 4800;

}  // namespace

SteadySound::SteadySound(SoundFormat format, int outputRate, double start, Sink sink)
    : format_(format),
      outputRate_(outputRate),
      start_(start),
      sink_(std::move(sink)),
      resampler_(format.channels, format.sampleRate, outputRate) {}

double SteadySound::end() const {
    return start_ + static_cast<double>(framesOut_) / outputRate_ + resampler_.delay();
}

void SteadySound::append(const SoundChunk& chunk) {
    const auto channels = static_cast<std::size_t>(format_.channels);
    std::span<const float> samples = chunk.samples;
    const double error = chunk.hostTime - end();
    const double limit = aligned_ ? gapLimit : 0;
    if (error > limit) {
        appendSilence(error);
    } else if (error < -limit) {
        const auto doubled = static_cast<std::size_t>(std::lround(-error * format_.sampleRate));
        samples = samples.subspan(std::min(doubled * channels, samples.size()));
    } else {
        follow(error, static_cast<double>(samples.size() / channels) / format_.sampleRate);
    }
    aligned_ = !samples.empty();
    convert(samples);
}

void SteadySound::padTo(double hostTime) {
    if (hostTime <= end()) return;
    appendSilence(hostTime - end());
    aligned_ = false;
}

void SteadySound::follow(double error, double duration) {
    clockError_ =
        std::clamp(clockError_ + integralGain * error * duration, -greatestStretch, greatestStretch);
    resampler_.setStretch(
        std::clamp(clockError_ + proportionalGain * error, -greatestStretch, greatestStretch));
}

void SteadySound::appendSilence(double seconds) {
    static const std::vector<float> zeros(silenceBlock);
    const auto channels = static_cast<std::size_t>(format_.channels);
    resampler_.setStretch(0);  // silence is as long as the host's clock says
    auto left = static_cast<std::size_t>(std::lround(seconds * format_.sampleRate)) * channels;
    while (left > 0) {
        const std::size_t count = std::min(left, silenceBlock / channels * channels);
        convert(std::span(zeros).first(count));
        left -= count;
    }
    resampler_.setStretch(clockError_);
}

void SteadySound::convert(std::span<const float> samples) {
    if (samples.empty()) return;
    const auto converted = resampler_.convert(samples);
    framesOut_ += static_cast<std::int64_t>(converted.size()) / format_.channels;
    if (!converted.empty()) sink_(converted);
}

}  // namespace tessaloom
