// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuGaussianBlur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "render/GpuTestDevice.h"
#include "render/RandomFrame.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::Chance;

/// 1.5 % of full scale.
constexpr double greatestDifference = 0.015 * 255;

/// Red, green, blue of each pixel, 0 to 255.
struct Values {
    int width = 0;
    int height = 0;
    std::vector<double> channels;

    double& at(int x, int y, int channel) {
        return channels[static_cast<std::size_t>((y * width + x) * 3 + channel)];
    }
};

std::vector<double> gaussian(double sigma) {
    const int radius = static_cast<int>(std::ceil(5 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += weights.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

/// One axis, the edge repeated.
Values blurredAlong(Values& source, const std::vector<double>& weights, int stepX, int stepY) {
    const int radius = static_cast<int>(weights.size() / 2);
    Values result{source.width, source.height, std::vector<double>(source.channels.size())};
    for (int y = 0; y < source.height; ++y) {
        for (int x = 0; x < source.width; ++x) {
            for (int i = -radius; i <= radius; ++i) {
                const int fromX = std::clamp(x + i * stepX, 0, source.width - 1);
                const int fromY = std::clamp(y + i * stepY, 0, source.height - 1);
                for (int channel = 0; channel < 3; ++channel) {
                    result.at(x, y, channel) +=
                        weights[static_cast<std::size_t>(i + radius)] * source.at(fromX, fromY, channel);
                }
            }
        }
    }
    return result;
}

Values trueGaussian(const BgraImage& picture, double sigma) {
    Values values{picture.width(), picture.height(), {}};
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint8_t* pixel = test::pixelAt(picture, x, y);
            values.channels.insert(values.channels.end(),
                                   {double(pixel[2]), double(pixel[1]), double(pixel[0])});
        }
    }
    const std::vector<double> weights = gaussian(sigma);
    Values across = blurredAlong(values, weights, 1, 0);
    return blurredAlong(across, weights, 0, 1);
}

/// Noise and flat areas, and what is hardest: bright lines on the edges and along the middle.
BgraImage hardPicture(Chance& chance, int width, int height) {
    BgraImage picture = test::randomPicture(chance, width, height);
    for (int y = 0; y < height; ++y) {
        for (const int x : {0, width / 2, width - 1})
            std::fill_n(test::pixelAt(picture, x, y), 3,
                        x == width / 2 ? std::uint8_t{0} : std::uint8_t{255});
    }
    for (int x = 0; x < width; ++x)
        std::fill_n(test::pixelAt(picture, x, height - 1), 3, std::uint8_t{255});
    return picture;
}

class GpuGaussianBlurTest : public ::testing::TestWithParam<GpuApi> {
  protected:
    void SetUp() override {
        opened_ = test::openGpuDevice(GetParam());
        if (!opened_.device) GTEST_SKIP() << "this machine has no " << test::nameOf(GetParam());
    }

    test::GpuTestDevice opened_;
};

/// A blur with the picture it reads.
class BlurredPicture {
  public:
    explicit BlurredPicture(GpuDevice& device)
        : rhi_(device.rhi()),
          inputs_(device),
          source_(device, QRhiTexture::BGRA8),
          blur_(device, inputs_, ":/tessaloom/shaders", source_) {}

    QRhiReadbackResult blurred(const BgraImage& picture, double sigma) {
        QRhiReadbackResult result;
        QRhiCommandBuffer* commands = nullptr;
        QRhiResourceUpdateBatch* const uploads = rhi_.nextResourceUpdateBatch();
        QRhiResourceUpdateBatch* const readback = rhi_.nextResourceUpdateBatch();
        inputs_.clear();
        EXPECT_TRUE(source_.upload(picture.view(), 0, *uploads) && blur_.prepare(sigma) &&
                    inputs_.upload(*uploads));
        rhi_.beginOffscreenFrame(&commands);
        commands->resourceUpdate(uploads);
        blur_.draw(*commands);
        readback->readBackTexture({blur_.result().texture()}, &result);
        commands->resourceUpdate(readback);
        rhi_.endOffscreenFrame();
        return result;
    }

  private:
    QRhi& rhi_;
    GpuInputs inputs_;
    GpuTexture source_;
    GpuGaussianBlur blur_;
};

TEST_P(GpuGaussianBlurTest, IsAGaussianAtAnySizeAndWidth) {
    struct Case {
        int width;
        int height;
        double sigma;
    };
    Chance chance(1);
    BlurredPicture blur(*opened_.device);
    for (const auto& [width, height, sigma] :
         {Case{1, 1, 1}, Case{64, 48, 1}, Case{65, 31, 2.7}, Case{200, 113, 5.99}, Case{200, 113, 6},
          Case{320, 24, 11.2}, Case{31, 240, 11.99}, Case{127, 95, 12}, Case{640, 36, 22.4},
          Case{100, 75, 47.9}, Case{3840, 6, 134.4}, Case{40, 60, 190}}) {
        const BgraImage picture = hardPicture(chance, width, height);
        const QRhiReadbackResult actual = blur.blurred(picture, sigma);
        ASSERT_EQ(actual.pixelSize, QSize(width, height));
        Values expected = trueGaussian(picture, sigma);
        double worst = 0;
        for (int i = 0; i < width * height * 3; ++i) {
            const int value = static_cast<std::uint8_t>(actual.data.at(i / 3 * 4 + i % 3));
            worst = std::max(worst, std::abs(value - expected.channels[static_cast<std::size_t>(i)]));
        }
        EXPECT_LT(worst, greatestDifference) << width << 'x' << height << ", sigma " << sigma;
    }
}

INSTANTIATE_TEST_SUITE_P(EachApi, GpuGaussianBlurTest, ::testing::ValuesIn(test::everyGpuApi),
                         [](const auto& info) { return test::nameOf(info.param); });

}  // namespace
}  // namespace tessaloom
