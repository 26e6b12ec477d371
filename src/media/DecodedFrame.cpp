// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/DecodedFrame.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <optional>
#include <utility>

#include "media/LibavHandles.h"
#include "media/SamplePlanes.h"
#include "media/YuvToBgra.h"

namespace tessaloom {
namespace {

/// Grey fills its range where nothing is said.
bool isGrey(const AVFrame& frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return format != nullptr && format->nb_components < 3;
}

bool isFullRange(const AVFrame& frame) {
    if (frame.color_range == AVCOL_RANGE_UNSPECIFIED && isGrey(frame)) return true;
    return frame.color_range == AVCOL_RANGE_JPEG || frame.format == AV_PIX_FMT_YUVJ420P ||
           frame.format == AV_PIX_FMT_YUVJ422P || frame.format == AV_PIX_FMT_YUVJ444P;
}

YuvEncoding encodingOf(const AVFrame& frame) {
    using enum YuvEncoding::Matrix;
    YuvEncoding encoding{.matrix = bt709, .fullRange = isFullRange(frame)};
    if (frame.colorspace == AVCOL_SPC_BT470BG || frame.colorspace == AVCOL_SPC_SMPTE170M)
        encoding.matrix = bt601;
    if (frame.colorspace == AVCOL_SPC_BT2020_NCL) encoding.matrix = bt2020;
    return encoding;
}

/// Nothing for a form that has to be brought into planes of 8 bits first.
std::optional<YuvView> viewOf(const AVFrame& frame) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    const bool planar = format != nullptr && format->nb_components == 3 &&
                        (format->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 &&
                        (format->flags & AV_PIX_FMT_FLAG_RGB) == 0 && format->comp[0].depth == 8 &&
                        format->comp[2].plane == 2;
    if (!planar || format->log2_chroma_w > 1 || format->log2_chroma_h > 1) return std::nullopt;
    return YuvView{.planes = {frame.data[0], frame.data[1], frame.data[2]},
                   .strides = {frame.linesize[0], frame.linesize[1], frame.linesize[2]},
                   .width = frame.width,
                   .height = frame.height,
                   .halfColumns = format->log2_chroma_w == 1,
                   .halfRows = format->log2_chroma_h == 1};
}

/// `target` has the frame's size.
void convert(const AVFrame& frame, BgraImage& target) {
    if (const auto view = viewOf(frame)) return yuvToBgra(*view, encodingOf(frame), target);
    SamplePlanes(frame).toBgra(encodingOf(frame), target);
}

}  // namespace

DecodedFrame::DecodedFrame(std::shared_ptr<const AVFrame> frame, double time, Rotation rotation)
    : frame_(std::move(frame)), time_(time), rotation_(rotation) {}

int DecodedFrame::width() const {
    return swapsSides(rotation_) ? frame_->height : frame_->width;
}

int DecodedFrame::height() const {
    return swapsSides(rotation_) ? frame_->width : frame_->height;
}

void DecodedFrame::toBgra(BgraImage& target) const {
    const AVFrame& frame = *frame_;
    if (rotation_ != Rotation::none) {
        BgraImage unturned(frame.width, frame.height);
        convert(frame, unturned);
        rotate(unturned.view(), rotation_, target);
        return;
    }
    if (target.width() != frame.width || target.height() != frame.height)
        target = BgraImage(frame.width, frame.height);
    convert(frame, target);
}

}  // namespace tessaloom
