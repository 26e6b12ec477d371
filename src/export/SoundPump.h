// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <stop_token>
#include <vector>

#include "export/AudioMix.h"
#include "media/MovieWriter.h"

namespace tessaloom {

/// Carries an export's sound into the movie, block by block, at the pace of the pictures. Used by one thread
/// at a time.
class SoundPump {
  public:
    SoundPump(AudioMix mix, MovieWriter& writer);

    /// Writes the sound up to this time of the movie. Throws ExportCancelled, and MediaError.
    void pumpTo(double seconds, const std::stop_token& stop);

    /// Writes all that is left.
    void finish(const std::stop_token& stop);

  private:
    void pump(std::int64_t end, const std::stop_token& stop);

    AudioMix mix_;
    MovieWriter& writer_;
    std::int64_t position_ = 0;
    std::vector<StereoSample> block_;
};

}  // namespace tessaloom
