// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "media/H264ParameterSets.h"

namespace tessaloom {

/// Where a picture of an H.264 stream stands: `frame_num` and `pic_order_cnt_lsb` of its header.
struct H264PictureNumbers {
    std::uint32_t frameNumber = 0;
    std::uint32_t pictureOrder = 0;
};

/// A coded picture that says "all as in the picture before", pixel by pixel, in a few dozen bytes. No other
/// picture refers to it. A unit of a byte stream without its start code and emulation prevention.
std::vector<std::uint8_t> skipPicture(const H264ParameterSets& sets, H264PictureNumbers numbers);

}  // namespace tessaloom
