// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SamplePlanes.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <string>

#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

constexpr int wantedBits = 8;
constexpr std::uint8_t noColor = 128;

bool isPalette(const AVPixFmtDescriptor& format) {
    return (format.flags & AV_PIX_FMT_FLAG_PAL) != 0;
}

bool isRgb(const AVPixFmtDescriptor& format) {
    return isPalette(format) || (format.flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

bool isReadable(const AVPixFmtDescriptor& format) {
    constexpr unsigned foreign =
        AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BAYER | AV_PIX_FMT_FLAG_FLOAT | AV_PIX_FMT_FLAG_BITSTREAM;
    const bool isYuvOrRgb = std::string_view(format.name).find("xyz") == std::string_view::npos;
    return (format.flags & foreign) == 0 && isYuvOrRgb && format.nb_components > 0 &&
           format.log2_chroma_w <= 1 && format.log2_chroma_h <= 1;
}

const AVPixFmtDescriptor& formatOf(const AVFrame& frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (format == nullptr) throw UnreadableMovie("The pictures' format is unknown.");
    if (!isReadable(*format))
        throw UnreadableMovie(std::string("Pictures in the format ") + format->name + " can't be shown.");
    return *format;
}

/// YUV is counted in steps of the eight bits' step; RGB from nothing to all.
std::uint8_t toByte(int sample, int bits, bool fillsRange) {
    if (fillsRange) {
        const int greatest = (1 << bits) - 1;
        return static_cast<std::uint8_t>((sample * 255 + greatest / 2) / greatest);
    }
    const int shift = std::max(bits - wantedBits, 0);
    return static_cast<std::uint8_t>(std::min((sample + (1 << shift >> 1)) >> shift, 255));
}

int halved(int size, bool half) {
    return half ? (size + 1) / 2 : size;
}

}  // namespace

SamplePlanes::SamplePlanes(const AVFrame& frame) {
    const AVPixFmtDescriptor& format = formatOf(frame);
    isRgb_ = isRgb(format);
    // Grey with transparency has two parts.
    isGrey_ = !isRgb_ && format.nb_components < 3;
    halfColumns_ = format.log2_chroma_w == 1 || isGrey_;
    halfRows_ = format.log2_chroma_h == 1 || isGrey_;
    planes_[0] = read(frame, format, 0);
    for (int part = 1; part < 3 && !isGrey_; ++part)
        planes_[static_cast<std::size_t>(part)] = read(frame, format, part);
    if (isPalette(format)) std::swap(planes_[0], planes_[2]);
    if (!isGrey_) return;
    for (Plane* plane : {&planes_[1], &planes_[2]}) {
        *plane = {halved(frame.width, true), halved(frame.height, true), {}};
        plane->samples.assign(
            static_cast<std::size_t>(plane->width) * static_cast<std::size_t>(plane->height), noColor);
    }
}

SamplePlanes::Plane SamplePlanes::read(const AVFrame& frame, const AVPixFmtDescriptor& format,
                                       int component) {
    const bool isChroma = component > 0 && !isRgb(format);
    Plane plane{halved(frame.width, isChroma && format.log2_chroma_w == 1),
                halved(frame.height, isChroma && format.log2_chroma_h == 1),
                {}};
    plane.samples.reserve(static_cast<std::size_t>(plane.width) * static_cast<std::size_t>(plane.height));
    const int bits = isPalette(format) ? wantedBits : format.comp[component].depth;
    std::vector<std::uint16_t> row(static_cast<std::size_t>(plane.width));
    for (int y = 0; y < plane.height; ++y) {
        av_read_image_line2(row.data(), const_cast<const std::uint8_t**>(frame.data), frame.linesize, &format,
                            0, y, component, plane.width, isPalette(format) ? 1 : 0, sizeof row.front());
        for (const int sample : row)
            plane.samples.push_back(toByte(sample, bits, isRgb(format)));
    }
    return plane;
}

void SamplePlanes::toBgra(YuvEncoding encoding, BgraImage& target) const {
    if (isRgb_) return weave(target);
    const auto& [luma, blue, red] = planes_;
    yuvToBgra({.planes = {luma.samples.data(), blue.samples.data(), red.samples.data()},
               .strides = {luma.width, blue.width, red.width},
               .width = luma.width,
               .height = luma.height,
               .halfColumns = halfColumns_,
               .halfRows = halfRows_},
              encoding, target);
}

void SamplePlanes::weave(BgraImage& target) const {
    const auto& [red, green, blue] = planes_;
    std::size_t from = 0;
    for (int y = 0; y < target.height(); ++y) {
        std::uint8_t* pixel = target.row(y);
        for (int x = 0; x < target.width(); ++x, ++from, pixel += 4) {
            pixel[0] = blue.samples[from];
            pixel[1] = green.samples[from];
            pixel[2] = red.samples[from];
            pixel[3] = 255;
        }
    }
}

}  // namespace tessaloom
