// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string>

namespace tessaloom {

struct SoundFormat {
    int sampleRate = 48'000;
    int channels = 1;
};

/// A stretch of sound as the device's own clock cut it.
struct SoundChunk {
    double hostTime = 0;             ///< HostClock seconds of the first sample
    std::span<const float> samples;  ///< interleaved, -1 to 1
    int buffersLostBefore = 0;       ///< since the last chunk, because nobody took them in time
};

/// A microphone, or what the speakers play. It keeps delivering through whatever happens to its device: when
/// that is unplugged the default one takes over, and when there is none, or the sound server is gone, nothing
/// comes until there is one again.
class LiveSoundSource {
  public:
    /// Runs on the source's own thread; the samples are valid during the call.
    using Handler = std::function<void(const SoundChunk&)>;

    virtual ~LiveSoundSource() = default;

    /// The device's name for people, as of when it was opened.
    virtual std::string name() const = 0;
    virtual SoundFormat format() const = 0;

    /// Called once.
    virtual void start(Handler handler) = 0;
    /// The handler doesn't run after it returns. Safe to call at any time, also twice.
    virtual void stop() = 0;
};

}  // namespace tessaloom
