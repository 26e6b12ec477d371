// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <span>
#include <vector>

namespace tessaloom {

/// Changes the sample rate of interleaved sound, by a factor that may be trimmed while it runs. The first
/// sample out stands for the first one in. Used by one thread at a time.
class SoundResampler {
  public:
    /// Throws MediaError.
    SoundResampler(int channels, int inputRate, int outputRate);
    ~SoundResampler();

    /// From here on the sound lasts 1 + `stretch` times as long. Steps are 3 parts in a million.
    void setStretch(double stretch);

    /// Takes whole frames and gives what is ready; the rest follows with the next call. Valid until then.
    /// Throws MediaError.
    std::span<const float> convert(std::span<const float> interleaved);

    /// How much of what was taken has not come out yet, in seconds.
    double delay() const;

  private:
    struct Converter;

    int channels_;
    int inputRate_;
    int outputRate_;
    std::unique_ptr<Converter> converter_;
    std::vector<float> output_;
};

}  // namespace tessaloom
