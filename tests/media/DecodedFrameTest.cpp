// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/DecodedFrame.h"

#include <gtest/gtest.h>

extern "C" {
#include <libavutil/frame.h>
}

#include "media/MediaError.h"
#include "media/MovieReader.h"
#include "media/SoundConverter.h"
#include "support/Ffmpeg.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

std::shared_ptr<AVFrame> emptyFrame() {
    return {av_frame_alloc(), [](AVFrame* frame) { av_frame_free(&frame); }};
}

/// The left 32 columns are of one colour and the others of another one.
void expectHalves(const BgraImage& image, std::array<int, 3> left, std::array<int, 3> right) {
    for (const int x : {0, 29, 34, 62})
        for (const int y : {0, 46})
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const auto& color = x < 32 ? left : right;
                EXPECT_NEAR(test::pixelAt(image, x, y)[channel], color[channel], 3) << x << "," << y;
            }
    EXPECT_EQ(test::pixelAt(image, 5, 5)[3], 255);
}

TEST(DecodedFrame, PicturesInUnusualFormsShowTheirColors) {
    const test::TemporaryFolder folder;
    const auto movie = (folder.path() / "a.nut").string();
    const std::string halves =
        "color=0x2878C8:s=32x48:r=10:d=0.3,format=gbrp[a];"
        "color=0xE0A030:s=32x48:r=10:d=0.3,format=gbrp[b];[a][b]hstack";
    const std::string yuv = ",scale=out_color_matrix=bt709:out_range=tv,format=";
    const std::string rgb = ",format=";
    const std::vector<std::pair<std::string, std::string>> forms{
        {yuv + "yuv420p", "ffv1"},     {yuv + "yuv420p10le", "libx264"}, {yuv + "yuv422p10le", "ffv1"},
        {yuv + "yuv444p12le", "ffv1"}, {yuv + "yuv420p16le", "ffv1"},    {yuv + "yuva420p", "ffv1"},
        {yuv + "nv12", "rawvideo"},    {yuv + "yuyv422", "rawvideo"},    {yuv + "uyvy422", "rawvideo"},
        {rgb + "gbrp", "ffv1"},        {rgb + "gbrp10le", "ffv1"},       {rgb + "rgb48le", "ffv1"},
        {rgb + "rgb24", "rawvideo"},   {rgb + "bgr0", "rawvideo"},       {rgb + "argb", "rawvideo"}};
    for (const auto& [form, codec] : forms) {
        SCOPED_TRACE(form);
        test::runFfmpeg(
            {"-filter_complex", halves + form, "-c:v", codec, "-qp", "1", "-colorspace", "bt709", movie});
        BgraImage image;
        MovieReader::open(movie)->next()->toBgra(image);
        ASSERT_EQ(image.width(), 64);
        ASSERT_EQ(image.height(), 48);
        expectHalves(image, {0xC8, 0x78, 0x28}, {0x30, 0xA0, 0xE0});
    }
}

TEST(DecodedFrame, GreyFillsItsRangeUnlessItSaysOtherwise) {
    auto frame = emptyFrame();
    frame->format = AV_PIX_FMT_GRAY8;
    frame->width = 63;
    frame->height = 47;
    ASSERT_EQ(av_frame_get_buffer(frame.get(), 0), 0);
    for (int y = 0; y < frame->height; ++y)
        for (int x = 0; x < frame->width; ++x)
            frame->data[0][y * frame->linesize[0] + x] = x < 32 ? 16 : 235;
    BgraImage image;
    DecodedFrame(frame, 0, Rotation::none).toBgra(image);
    expectHalves(image, {16, 16, 16}, {235, 235, 235});
    frame->color_range = AVCOL_RANGE_MPEG;
    DecodedFrame(frame, 0, Rotation::none).toBgra(image);
    expectHalves(image, {0, 0, 0}, {255, 255, 255});
}

TEST(DecodedFrame, PicturesThatLieOutsideOfMemoryAreTheRecordingsFault) {
    for (const AVPixelFormat format : {AV_PIX_FMT_VAAPI, AV_PIX_FMT_BAYER_BGGR8, AV_PIX_FMT_GBRPF32LE}) {
        const auto frame = emptyFrame();
        frame->format = format;
        frame->width = frame->height = 2;
        BgraImage image;
        EXPECT_THROW(DecodedFrame(frame, 0, Rotation::none).toBgra(image), UnreadableMovie) << format;
    }
}

TEST(SoundConverter, SoundThatCannotBeConvertedIsTheRecordingsFault) {
    const auto frame = emptyFrame();
    frame->format = AV_SAMPLE_FMT_NONE;
    frame->sample_rate = 48'000;
    frame->nb_samples = 100;
    frame->ch_layout = AV_CHANNEL_LAYOUT_STEREO;
    std::vector<StereoSample> sound;
    EXPECT_THROW(SoundConverter().convert(*frame, sound), UnreadableMovie);
}

}  // namespace
}  // namespace tessaloom
