// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

#include "media/AudioReader.h"
#include "media/SoundSource.h"

namespace tessaloom {

/// Music under the whole of a result: from its beginning again as soon as it ends, without a gap, faded in
/// and out over half a second at the result's two ends. In a result too short for both, the lower of the two
/// fades counts.
class MusicBed final : public SoundSource {
  public:
    /// `length` is the result's, in samples.
    MusicBed(std::unique_ptr<AudioReader> music, std::int64_t length);

    void read(std::span<StereoSample> target) override;

  private:
    void readRound(std::span<StereoSample> target);
    float level(std::int64_t position) const;

    std::unique_ptr<AudioReader> music_;
    std::int64_t length_;
    std::int64_t position_ = 0;
    std::int64_t musicPosition_ = 0;
};

}  // namespace tessaloom
