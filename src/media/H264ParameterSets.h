// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace tessaloom {

/// What the headers of an H.264 stream's pictures depend on. Names and meaning are those of ITU-T
/// H.264, 7.4.2.
struct H264ParameterSets {
    std::uint32_t pictureParameterSet = 0;
    int frameNumberBits = 4;
    int pictureOrderBits = 4;
    /// Of a picture.
    int macroblocks = 0;
    bool weightedPrediction = false;
    int initialQuantiser = 26;
    bool deblockingControl = false;

    /// Of a byte stream with one set of each kind. Nothing where the pictures are not of the plain sort
    /// that is understood here: whole frames in one slice group, arithmetic coding, and their order told by
    /// its lowest bits.
    static std::optional<H264ParameterSets> read(std::span<const std::uint8_t> stream);
};

}  // namespace tessaloom
