// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/CameraPixels.h"

#include <algorithm>
#include <cstring>

#include "media/DecodedFrame.h"
#include "media/LibavHandles.h"

namespace tessaloom {
namespace {

using Layout = CameraBuffer::Layout;

std::ptrdiff_t leastStride(const CameraBuffer& buffer) {
    switch (buffer.layout) {
        case Layout::bgrx:
        case Layout::rgbx:
            return std::ptrdiff_t{4} * buffer.width;
        case Layout::yuyv:
            return std::ptrdiff_t{2} * buffer.width;
        default:
            return buffer.width;
    }
}

void requireWhole(const CameraBuffer& buffer) {
    const bool hasQuarterPlanes = buffer.layout == Layout::nv12 || buffer.layout == Layout::i420;
    const std::ptrdiff_t rows = hasQuarterPlanes ? buffer.height + buffer.height / 2 : buffer.height;
    const auto size = static_cast<std::ptrdiff_t>(buffer.bytes.size());
    const bool sizeIsEven = buffer.width > 0 && buffer.height > 0 && (buffer.width | buffer.height) % 2 == 0;
    if (!sizeIsEven || buffer.stride < leastStride(buffer) || buffer.stride > size / rows)
        throw MediaError("The camera delivers broken pictures.");
}

YuvView viewOfI420(const CameraBuffer& buffer) {
    const std::uint8_t* blue = buffer.bytes.data() + buffer.stride * buffer.height;
    const std::uint8_t* red = blue + buffer.stride / 2 * (buffer.height / 2);
    return {.planes = {buffer.bytes.data(), blue, red},
            .strides = {buffer.stride, buffer.stride / 2, buffer.stride / 2},
            .width = buffer.width,
            .height = buffer.height};
}

}  // namespace

class CameraPixels::JpegDecoder {
  public:
    JpegDecoder() : codec_(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_MJPEG))) {
        requireLibav(avcodec_open2(codec_.get(), nullptr, nullptr), problem);
    }

    void decode(std::span<const std::uint8_t> bytes, BgraImage& target) {
        // The decoder reads a little past the end.
        padded_.assign(bytes.begin(), bytes.end());
        padded_.resize(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
        packet_->data = padded_.data();
        packet_->size = static_cast<int>(bytes.size());
        requireLibav(avcodec_send_packet(codec_.get(), packet_.get()), problem);
        const std::shared_ptr<AVFrame> frame(av_frame_alloc(), LibavDelete());
        requireLibav(avcodec_receive_frame(codec_.get(), frame.get()), problem);
        // What a JPEG file says, whatever the decoder makes of it.
        frame->colorspace = AVCOL_SPC_BT470BG;
        DecodedFrame(frame, 0, Rotation::none).toBgra(target);
    }

  private:
    static constexpr auto problem = "The camera's picture can't be decoded";

    LibavHandle<AVCodecContext> codec_;
    LibavHandle<AVPacket> packet_{av_packet_alloc()};
    std::vector<std::uint8_t> padded_;
};

CameraPixels::CameraPixels() = default;
CameraPixels::~CameraPixels() = default;

BgraView CameraPixels::toBgra(CameraBuffer buffer) {
    if (buffer.layout == Layout::mjpeg) {
        if (!jpeg_) jpeg_ = std::make_unique<JpegDecoder>();
        jpeg_->decode(buffer.bytes, image_);
        BgraView picture = image_.view();
        picture.width &= ~1;
        picture.height &= ~1;
        return picture;
    }
    if (buffer.stride == 0) buffer.stride = leastStride(buffer);
    requireWhole(buffer);
    if (buffer.layout == Layout::bgrx)
        return {buffer.bytes.data(), buffer.width, buffer.height, buffer.stride};
    if (image_.width() != buffer.width || image_.height() != buffer.height)
        image_ = BgraImage(buffer.width, buffer.height);
    return buffer.layout == Layout::rgbx ? swapRedAndBlue(buffer) : convertYuv(buffer);
}

BgraView CameraPixels::swapRedAndBlue(const CameraBuffer& buffer) {
    for (int y = 0; y < buffer.height; ++y) {
        const std::uint8_t* source = buffer.bytes.data() + y * buffer.stride;
        std::uint8_t* target = image_.row(y);
        for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{4} * buffer.width; i += 4) {
            target[i] = source[i + 2];
            target[i + 1] = source[i + 1];
            target[i + 2] = source[i];
            target[i + 3] = 255;
        }
    }
    return image_.view();
}

BgraView CameraPixels::convertYuv(const CameraBuffer& buffer) {
    YuvView view = buffer.layout == Layout::yuyv   ? unpackYuyv(buffer)
                   : buffer.layout == Layout::nv12 ? unpackNv12(buffer)
                                                   : viewOfI420(buffer);
    yuvToBgra(view, buffer.encoding, image_);
    return image_.view();
}

YuvView CameraPixels::unpackYuyv(const CameraBuffer& buffer) {
    const std::ptrdiff_t width = buffer.width;
    const std::ptrdiff_t area = width * buffer.height;
    planes_.resize(static_cast<std::size_t>(2 * area));
    std::uint8_t* luma = planes_.data();
    std::uint8_t* blue = luma + area;
    std::uint8_t* red = blue + area / 2;
    for (std::ptrdiff_t y = 0; y < buffer.height; ++y) {
        const std::uint8_t* source = buffer.bytes.data() + y * buffer.stride;
        for (std::ptrdiff_t pair = 0; pair < width / 2; ++pair) {
            luma[y * width + 2 * pair] = source[4 * pair];
            blue[y * (width / 2) + pair] = source[4 * pair + 1];
            luma[y * width + 2 * pair + 1] = source[4 * pair + 2];
            red[y * (width / 2) + pair] = source[4 * pair + 3];
        }
    }
    return {.planes = {luma, blue, red},
            .strides = {width, width / 2, width / 2},
            .width = buffer.width,
            .height = buffer.height,
            .halfColumns = true,
            .halfRows = false};
}

YuvView CameraPixels::unpackNv12(const CameraBuffer& buffer) {
    const std::ptrdiff_t halfWidth = buffer.width / 2;
    const std::ptrdiff_t halfHeight = buffer.height / 2;
    planes_.resize(static_cast<std::size_t>(2 * halfWidth * halfHeight));
    std::uint8_t* blue = planes_.data();
    std::uint8_t* red = blue + halfWidth * halfHeight;
    for (std::ptrdiff_t y = 0; y < halfHeight; ++y) {
        const std::uint8_t* source = buffer.bytes.data() + (buffer.height + y) * buffer.stride;
        for (std::ptrdiff_t x = 0; x < halfWidth; ++x) {
            blue[y * halfWidth + x] = source[2 * x];
            red[y * halfWidth + x] = source[2 * x + 1];
        }
    }
    return {.planes = {buffer.bytes.data(), blue, red},
            .strides = {buffer.stride, halfWidth, halfWidth},
            .width = buffer.width,
            .height = buffer.height};
}

}  // namespace tessaloom
