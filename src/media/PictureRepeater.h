// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "media/SkipPicture.h"

namespace tessaloom {

/// Adds pictures to an encoder's H.264 that repeat the one before, which the encoder never sees: that takes
/// next to no time and no room. The encoder must predict from earlier pictures only, so that its pictures
/// come in the order in which they are shown.
class PictureRepeater {
  public:
    explicit PictureRepeater(const H264ParameterSets& sets) : sets_(sets) {}

    /// The encoder's next picture, in its place behind everything so far. A byte stream, like the result.
    std::vector<std::uint8_t> append(std::span<const std::uint8_t> picture);

    /// The last picture once more. There must be one.
    std::vector<std::uint8_t> repeat();

  private:
    void renumber(std::span<std::uint8_t> slice);

    H264ParameterSets sets_;
    /// Of the picture that came last.
    std::uint32_t pictureOrder_ = 0;
    /// What follows the last picture that others refer to.
    std::uint32_t nextFrameNumber_ = 0;
};

}  // namespace tessaloom
