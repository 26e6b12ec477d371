// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>

#include "media/StereoSample.h"

namespace tessaloom {

/// Sound that is pulled in order, from its first sample on. Used by one thread at a time.
class SoundSource {
  public:
    SoundSource() = default;
    virtual ~SoundSource() = default;
    SoundSource(const SoundSource&) = delete;
    SoundSource& operator=(const SoundSource&) = delete;

    /// Fills `target` with what follows the last read; silence for ever after the sound's end. Throws
    /// MediaError.
    virtual void read(std::span<StereoSample> target) = 0;
};

}  // namespace tessaloom
