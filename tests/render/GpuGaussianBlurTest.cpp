// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuGaussianBlur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "render/GpuTestDevice.h"
#include "render/RandomFrame.h"
#include "render/ReferenceStages.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::Chance;

/// 1.5 % of full scale.
constexpr double greatestDifference = 0.015 * 255;

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
        const BgraImage expected = test::referenceBlur(picture.view(), sigma);
        double worst = 0;
        for (int i = 0; i < width * height; ++i) {
            const std::uint8_t* wanted = test::pixelAt(expected, i % width, i / width);
            // The device keeps red first.
            for (int channel = 0; channel < 3; ++channel) {
                const int value = static_cast<std::uint8_t>(actual.data.at(4 * i + 2 - channel));
                worst = std::max(worst, std::abs(double(value - wanted[channel])));
            }
        }
        EXPECT_LT(worst, greatestDifference) << width << 'x' << height << ", sigma " << sigma;
    }
}

INSTANTIATE_TEST_SUITE_P(EachApi, GpuGaussianBlurTest, ::testing::ValuesIn(test::everyGpuApi),
                         [](const auto& info) { return test::nameOf(info.param); });

}  // namespace
}  // namespace tessaloom
