// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "media/SoundSource.h"

namespace tessaloom::test {

/// Mono samples.
using Sound = std::vector<float>;

constexpr double beepLength = 0.05;

/// Silence with a 1 kHz beep, half as loud as can be, at each of these times in seconds.
Sound beeps(double seconds, std::span<const double> times, int rate = soundRate);

/// A sine of this peak.
Sound sine(double seconds, double frequency, double peak, int rate = soundRate);

/// A WAVE file with 16 bits a sample.
void writeWave(const std::filesystem::path& path, std::span<const float> sound, int rate = soundRate);

/// Has FFmpeg's program write the WAVE file's sound to another file, whose extension says in which form.
void convertSound(const std::filesystem::path& wave, const std::filesystem::path& target,
                  const std::vector<std::string>& options = {});

/// The same on both sides, followed by silence.
class MonoSource final : public SoundSource {
  public:
    /// Gives the sample at each position.
    explicit MonoSource(std::function<float(std::int64_t)> sample) : sample_(std::move(sample)) {}
    explicit MonoSource(Sound sound);

    void read(std::span<StereoSample> target) override;

  private:
    std::function<float(std::int64_t)> sample_;
    std::int64_t position_ = 0;
};

/// The next `count` samples, pulled in blocks of an odd size.
std::vector<StereoSample> pull(SoundSource& source, std::int64_t count);

/// Seconds at which sounds set in after at least 20 ms of silence.
std::vector<double> onsets(std::span<const StereoSample> sound);

/// The greatest sample on the left between two times in seconds.
double peakBetween(std::span<const StereoSample> sound, double start, double end);

/// The greatest step from one sample to the next on the left: a click is one that the material hasn't.
double steepestStep(std::span<const StereoSample> sound);

}  // namespace tessaloom::test
