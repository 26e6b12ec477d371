// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/TimeSegment.h"
#include "media/AudioReader.h"
#include "media/SoundSource.h"

namespace tessaloom {

/// The kept pieces of a recorded sound, one after the other. Where the sound doesn't reach, its place is
/// silent, so that every piece begins where it does in the picture: to the sample, however many there are. A
/// joint is a crossfade of a few milliseconds with its middle on the cut.
class KeptSound final : public SoundSource {
  public:
    /// `segments` are the kept pieces in source seconds, each with a length; the sound's own time zero is at
    /// `offset` there.
    KeptSound(std::unique_ptr<AudioReader> reader, std::span<const TimeSegment> segments, double offset);

    void read(std::span<StereoSample> target) override;

  private:
    /// In samples.
    struct Piece {
        std::int64_t begin = 0;   ///< in the result
        std::int64_t end = 0;     ///< in the result
        std::int64_t source = 0;  ///< in the recorded sound, at `begin`
        std::int64_t length() const { return end - begin; }
    };

    static std::vector<Piece> piecesOf(std::span<const TimeSegment> segments, double offset);
    std::int64_t fadeInto(std::size_t piece) const;
    void makeJoint(std::size_t piece);

    std::unique_ptr<AudioReader> reader_;
    std::vector<Piece> pieces_;
    std::size_t piece_ = 0;
    std::int64_t position_ = 0;
    std::vector<StereoSample> joint_;
    std::size_t jointUsed_ = 0;
};

}  // namespace tessaloom
