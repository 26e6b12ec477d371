// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/SurfaceUpload.h"

extern "C" {
#include <libavutil/hwcontext.h>
}

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "media/H264Encoder.h"
#include "support/SamePixels.h"

namespace tessaloom {
namespace {

/// A GPU in software: it has no encoder, but its memory is as far away as a real one's.
const SurfaceDevice softwareGpu{.interface = "vulkan", .name = "llvmpipe"};

bool hasSoftwareGpu() {
    AVBufferRef* device = nullptr;
    const int result =
        av_hwdevice_ctx_create(&device, AV_HWDEVICE_TYPE_VULKAN, softwareGpu.name.c_str(), nullptr, 0);
    const LibavHandle<AVBufferRef> handle(device);
    return result >= 0;
}

YuvImage noise(int width, int height, unsigned seed) {
    YuvImage image(width, height);
    std::mt19937 generator(seed);
    for (int plane = 0; plane < 3; ++plane) {
        const int scale = plane == 0 ? 1 : 2;
        for (int y = 0; y < height / scale; ++y)
            for (int x = 0; x < width / scale; ++x)
                image.plane(plane)[y * image.stride(plane) + x] = static_cast<std::uint8_t>(generator());
    }
    return image;
}

/// Reads a surface back from the device.
YuvImage pictureOn(const AVFrame& surface) {
    const LibavHandle<AVFrame> frame(av_frame_alloc());
    frame->format = AV_PIX_FMT_NV12;
    requireLibav(av_hwframe_transfer_data(frame.get(), &surface, 0), "The surface can't be read");
    YuvImage image(surface.width, surface.height);
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(image.plane(0) + y * image.stride(0), frame->data[0] + y * frame->linesize[0],
                    static_cast<std::size_t>(image.width()));
    for (int y = 0; y < image.height() / 2; ++y)
        for (int x = 0; x < image.width(); ++x)
            image.plane(1 + x % 2)[y * image.stride(1) + x / 2] = frame->data[1][y * frame->linesize[1] + x];
    return image;
}

class SurfaceUploadTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!hasSoftwareGpu()) GTEST_SKIP() << "this machine has no Vulkan in software";
    }
};

TEST_F(SurfaceUploadTest, WhatArrivesIsThePicture) {
    for (const auto& [width, height] : {std::pair(320, 180), std::pair(322, 182), std::pair(2, 2)}) {
        SCOPED_TRACE(width);
        auto surfaces = SurfaceUpload::open(softwareGpu, width, height);
        const YuvImage image = noise(width, height, 1);
        const LibavHandle<AVFrame> surface(av_frame_alloc());
        surfaces.upload(image, *surface);
        EXPECT_EQ(surface->format, AV_PIX_FMT_VULKAN);
        EXPECT_TRUE(test::samePixels(pictureOn(*surface), image));
    }
}

TEST_F(SurfaceUploadTest, SurfacesOutliveThePicturesTheyShow) {
    auto surfaces = SurfaceUpload::open(softwareGpu, 160, 90);
    std::vector<LibavHandle<AVFrame>> shown;
    for (unsigned n = 0; n < 20; ++n) {
        const YuvImage image = noise(160, 90, n);
        surfaces.upload(image, *shown.emplace_back(av_frame_alloc()));
    }
    for (unsigned n = 0; n < 20; ++n)
        EXPECT_TRUE(test::samePixels(pictureOn(*shown[n]), noise(160, 90, n))) << n;
}

TEST_F(SurfaceUploadTest, AnEncoderGetsEachPictureOnASurface) {
    // Hands on the frames it gets.
    const H264Settings settings{.width = 160,
                                .height = 90,
                                .timescale = 60,
                                .encoder = "wrapped_avframe",
                                .surfaces = softwareGpu,
                                .options = {}};
    H264Encoder encoder(settings);
    std::int64_t arrived = 0;
    const auto check = [&arrived](AVPacket& packet) {
        const auto& frame = *reinterpret_cast<const AVFrame*>(packet.data);
        ASSERT_EQ(frame.format, AV_PIX_FMT_VULKAN);
        EXPECT_EQ(frame.pts, arrived);
        EXPECT_TRUE(test::samePixels(pictureOn(frame), noise(160, 90, static_cast<unsigned>(frame.pts))));
        ++arrived;
    };
    for (unsigned n = 0; n < 5; ++n)
        encoder.encode(noise(160, 90, n), n, PictureMotion::moving, check);
    encoder.finish(check);
    EXPECT_EQ(arrived, 5);
}

TEST(SurfaceUploadFailure, ADeviceThatIsMissingIsAFailureOfTheEncoding) {
    for (const SurfaceDevice& device : {SurfaceDevice{"vaapi", "/dev/dri/missing"},
                                        SurfaceDevice{"vulkan", "missing"}, SurfaceDevice{"missing", ""}}) {
        EXPECT_THROW(SurfaceUpload::open(device, 160, 90), EncodingError) << device.interface;
    }
}

}  // namespace
}  // namespace tessaloom
