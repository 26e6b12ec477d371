// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>

#include "capture/LiveSoundSource.h"
#include "media/SoundResampler.h"

namespace tessaloom {

/// Puts sound on the host's clock: out of chunks as a device delivers them it makes an unbroken stream in
/// which sample n belongs to host time start + n / rate. A device clock that runs fast or slow is followed by
/// resampling, so gently that it isn't heard; a gap becomes silence of its length, and what comes twice is
/// left out. Used by one thread at a time.
class SteadySound {
  public:
    /// Takes the stream as it grows, interleaved.
    using Sink = std::function<void(std::span<const float>)>;

    /// The stream begins at `start` (HostClock seconds), whenever the first chunk comes. Throws MediaError,
    /// like all operations, which also pass on what the sink throws.
    SteadySound(SoundFormat format, int outputRate, double start, Sink sink);

    void append(const SoundChunk& chunk);

    /// Silence up to this host time, where the stream doesn't reach it yet.
    void padTo(double hostTime);

    /// The host time up to which there is sound.
    double end() const;

  private:
    void appendSilence(double seconds);
    void convert(std::span<const float> samples);
    void follow(double error, double duration);

    SoundFormat format_;
    int outputRate_;
    double start_;
    Sink sink_;
    SoundResampler resampler_;
    std::int64_t framesOut_ = 0;
    double clockError_ = 0;  ///< of the device, as far as it is known: host seconds per device second, less 1
    bool aligned_ = false;   ///< the device's sound stands where it belongs, but for small errors
};

}  // namespace tessaloom
