// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "media/BgraImage.h"
#include "media/YuvToBgra.h"

struct AVFrame;
struct AVPixFmtDescriptor;

namespace tessaloom {

/// The samples of a picture in a form that is rarely met (more than 8 bits, packed, grey, RGB) in planes of
/// 8 bits. Included by this folder's source files only.
class SamplePlanes {
  public:
    /// Throws UnreadableMovie for a form whose samples aren't whole numbers of YUV, RGB or grey in memory.
    explicit SamplePlanes(const AVFrame& frame);

    void toBgra(YuvEncoding encoding, BgraImage& target) const;

  private:
    struct Plane {
        int width = 0;
        int height = 0;
        std::vector<std::uint8_t> samples;
    };

    /// Of the form's part with this number.
    static Plane read(const AVFrame& frame, const AVPixFmtDescriptor& format, int component);
    void weave(BgraImage& target) const;

    /// Y, U, V or red, green, blue.
    std::array<Plane, 3> planes_;
    bool isRgb_ = false;
    bool isGrey_ = false;
    bool halfColumns_ = false;
    bool halfRows_ = false;
};

}  // namespace tessaloom
