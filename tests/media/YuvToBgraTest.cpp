// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/YuvToBgra.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <tuple>
#include <vector>

namespace tessaloom {
namespace {

using Matrix = YuvEncoding::Matrix;
using Channels = std::array<double, 3>;

// Blue, green and red straight from the standards' definition, in floating point.
Channels reference(YuvEncoding encoding, double y, double u, double v) {
    constexpr double redShares[] = {0.299, 0.2126, 0.2627};
    constexpr double blueShares[] = {0.114, 0.0722, 0.0593};
    const double redShare = redShares[static_cast<int>(encoding.matrix)];
    const double blueShare = blueShares[static_cast<int>(encoding.matrix)];
    const double luma = encoding.fullRange ? y / 255 : (y - 16) / 219;
    const double chromaRange = encoding.fullRange ? 255 : 224;
    const double blue = luma + (u - 128) / chromaRange * 2 * (1 - blueShare);
    const double red = luma + (v - 128) / chromaRange * 2 * (1 - redShare);
    const double green = (luma - redShare * red - blueShare * blue) / (1 - redShare - blueShare);
    const auto step = [](double value) { return std::clamp(value * 255, 0.0, 255.0); };
    return {step(blue), step(green), step(red)};
}

struct Planes {
    Planes(int width, int height) : stride(width + 5) {
        std::mt19937 generator(11);
        for (auto& plane : bytes) {
            plane.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
            for (auto& byte : plane)
                byte = static_cast<std::uint8_t>(generator());
        }
    }
    double at(int plane, int x, int y) const {
        return bytes[static_cast<std::size_t>(plane)].data()[std::ptrdiff_t{y} * stride + x];
    }

    int stride;
    std::array<std::vector<std::uint8_t>, 3> bytes;
};

class YuvToBgraOfAnyKind
    : public ::testing::TestWithParam<std::tuple<Matrix, bool, int, std::pair<bool, bool>>> {};

TEST_P(YuvToBgraOfAnyKind, IsTheNearestStepToTheDefinition) {
    const auto& [matrix, fullRange, width, half] = GetParam();
    const YuvEncoding encoding{matrix, fullRange};
    const int height = 5;
    const Planes planes(width, height);
    const YuvView view{.planes = {planes.bytes[0].data(), planes.bytes[1].data(), planes.bytes[2].data()},
                       .strides = {planes.stride, planes.stride, planes.stride},
                       .width = width,
                       .height = height,
                       .halfColumns = half.first,
                       .halfRows = half.second};
    BgraImage target(width, height);
    yuvToBgra(view, encoding, target);

    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int column = half.first ? x / 2 : x;
            const int row = half.second ? y / 2 : y;
            const Channels expected =
                reference(encoding, planes.at(0, x, y), planes.at(1, column, row), planes.at(2, column, row));
            const std::uint8_t* pixel = target.row(y) + std::ptrdiff_t{4} * x;
            for (std::size_t channel = 0; channel < 3; ++channel)
                ASSERT_NEAR(pixel[channel], expected[channel], 0.6) << x << "," << y << ":" << channel;
            ASSERT_EQ(pixel[3], 255);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, YuvToBgraOfAnyKind,
                         ::testing::Combine(::testing::Values(Matrix::bt601, Matrix::bt709, Matrix::bt2020),
                                            ::testing::Bool(), ::testing::Values(1, 7, 32, 33, 100),
                                            ::testing::Values(std::pair(true, true), std::pair(true, false),
                                                              std::pair(false, false))));

}  // namespace
}  // namespace tessaloom
