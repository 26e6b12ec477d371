// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "media/MovieReader.h"
#include "render/CpuRenderer.h"
#include "render/GpuTestDevice.h"
#include "support/ChildProcess.h"
#include "support/MovieProbe.h"
#include "support/PixelAt.h"
#include "support/TemporaryFolder.h"

namespace tessaloom {
namespace {

constexpr int barWidth = 32;
constexpr int height = 64;

using Rgb = std::array<int, 3>;

constexpr std::array<Rgb, 12> bars{{{255, 255, 255},
                                    {191, 191, 0},
                                    {0, 191, 191},
                                    {0, 191, 0},
                                    {191, 0, 191},
                                    {191, 0, 0},
                                    {0, 0, 191},
                                    {255, 0, 0},
                                    {0, 255, 0},
                                    {0, 0, 255},
                                    {128, 128, 128},
                                    {0, 0, 0}}};
constexpr int width = barWidth * static_cast<int>(bars.size());

/// How a movie's colours were made, in the words of FFmpeg's scaler, and what the movie says of them.
struct Encoding {
    const char* name;
    const char* matrix;
    const char* range;
    const char* matrixTag;
    const char* rangeTag;
};

void PrintTo(const Encoding& encoding, std::ostream* stream) {
    *stream << encoding.name;
}

constexpr std::array<Encoding, 5> encodings{{{"Bt709Limited", "bt709", "tv", "bt709", "tv"},
                                             {"Bt709Full", "bt709", "pc", "bt709", "pc"},
                                             {"Bt601Limited", "bt601", "tv", "smpte170m", "tv"},
                                             {"Bt601Full", "bt601", "pc", "bt470bg", "pc"},
                                             {"Untagged", "bt709", "tv", "unknown", "unknown"}}};

void writeBars(const std::filesystem::path& file) {
    std::ofstream stream(file, std::ios::binary);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (const int level : bars[static_cast<std::size_t>(x / barWidth)])
                stream.put(static_cast<char>(level));
        }
    }
}

/// By FFmpeg's own conversion and encoder, so that ours are judged by another's.
void encodeBars(const std::filesystem::path& pixels, const Encoding& encoding,
                const std::filesystem::path& movie) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    // Last, since a picture keeps what the scaler knows of it, which would be what the movie says.
    const std::string filter =
        std::string("scale=out_color_matrix=") + encoding.matrix + ":out_range=" + encoding.range +
        ":flags=accurate_rnd+full_chroma_int,format=yuv420p,setparams=range=" + encoding.rangeTag +
        ":colorspace=" + encoding.matrixTag;
    std::vector<std::string> command{
        "ffmpeg", "-v", "error",         "-nostdin", "-y",   "-f",   "rawvideo", "-pix_fmt", "rgb24", "-s",
        size,     "-i", pixels.string(), "-vf",      filter, "-c:v", "libx264",  "-qp",      "0"};
    command.push_back(movie.string());
    test::ChildProcess process(command, test::currentEnvironment());
    ASSERT_EQ(process.waitForExit(std::chrono::seconds(30)), 0) << process.errors();
    const std::string tags = test::probeMovie(movie).colors;
    ASSERT_TRUE(tags.starts_with(encoding.matrixTag) && tags.ends_with(encoding.rangeTag)) << tags;
}

/// The recording on the whole canvas, pixel for pixel.
FrameComposer::Frame bareFrame() {
    FrameComposer::Frame frame;
    frame.uniforms.a = {width, height, 0, 0};
    frame.uniforms.b = {width, height, 0, 0};
    frame.uniforms.c = {1, 1, 0, 0};
    return frame;
}

class ColorBarsTest : public ::testing::TestWithParam<Encoding> {
  protected:
    /// The movie's picture as it was decoded.
    BgraImage decoded() const {
        const auto pixels = folder_.path() / "bars.rgb";
        const auto movie = folder_.path() / "bars.mp4";
        writeBars(pixels);
        encodeBars(pixels, GetParam(), movie);
        BgraImage picture;
        if (const auto frame = MovieReader::open(movie)->next()) frame->toBgra(picture);
        return picture;
    }

  private:
    test::TemporaryFolder folder_;
};

void expectBars(const BgraImage& picture) {
    for (std::size_t bar = 0; bar < bars.size(); ++bar) {
        const auto* pixel =
            test::pixelAt(picture, static_cast<int>(bar) * barWidth + barWidth / 2, height / 2);
        for (std::size_t channel = 0; channel < 3; ++channel)
            EXPECT_NEAR(pixel[2 - channel], bars[bar][channel], 3)
                << "bar " << bar << ", channel " << channel;
    }
}

TEST_P(ColorBarsTest, AreDrawnInTheirColors) {
    const BgraImage picture = decoded();
    ASSERT_FALSE(picture.empty());
    std::vector<std::unique_ptr<Renderer>> renderers;
    renderers.push_back(std::make_unique<CpuRenderer>(1, std::vector<std::string>{}));
    for (const GpuApi api : test::everyGpuApi) {
        if (auto renderer = test::openGpuRenderer(api)) renderers.push_back(std::move(renderer));
    }
    for (const auto& renderer : renderers) {
        BgraImage target(width, height);
        renderer->render(bareFrame(), {{picture.view(), 1}}, target);
        expectBars(target);
    }
}

INSTANTIATE_TEST_SUITE_P(EachEncoding, ColorBarsTest, ::testing::ValuesIn(encodings),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace tessaloom
