// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GaussianBlur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "render/PictureReader.h"
#include "render/RandomFrame.h"
#include "support/AllocationCounter.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::Chance;

struct BlurCase {
    int width;
    int height;
    double sigma;
};

std::vector<double> bell(double sigma) {
    const int radius = static_cast<int>(std::ceil(5 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int i = -radius; i <= radius; ++i) {
        weights.push_back(std::exp(-i * i / (2 * sigma * sigma)));
        sum += weights.back();
    }
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

// One channel along one axis, its ends continued.
std::vector<double> blurredLine(const std::vector<double>& line, const std::vector<double>& weights) {
    const auto last = static_cast<std::ptrdiff_t>(line.size()) - 1;
    const auto radius = static_cast<std::ptrdiff_t>(weights.size()) / 2;
    std::vector<double> result(line.size());
    for (std::ptrdiff_t i = 0; i <= last; ++i) {
        for (std::ptrdiff_t tap = -radius; tap <= radius; ++tap) {
            result[static_cast<std::size_t>(i)] +=
                weights[static_cast<std::size_t>(tap + radius)] *
                line[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(i + tap, 0, last))];
        }
    }
    return result;
}

/// The green channel, plainly blurred.
std::vector<std::vector<double>> plainlyBlurred(const BgraImage& picture, double sigma) {
    const std::vector<double> weights = bell(sigma);
    const auto width = static_cast<std::size_t>(picture.width());
    std::vector<std::vector<double>> rows;
    for (int y = 0; y < picture.height(); ++y) {
        std::vector<double> row(width);
        for (int x = 0; x < picture.width(); ++x)
            row[static_cast<std::size_t>(x)] = test::pixelAt(picture, x, y)[1];
        rows.push_back(blurredLine(row, weights));
    }
    for (std::size_t x = 0; x < width; ++x) {
        std::vector<double> column;
        for (const auto& row : rows)
            column.push_back(row[x]);
        column = blurredLine(column, weights);
        for (std::size_t y = 0; y < rows.size(); ++y)
            rows[y][x] = column[y];
    }
    return rows;
}

BgraImage fullSize(const GaussianBlur& blur, int width, int height) {
    BgraImage result(width, height);
    PictureReader reader;
    reader.prepare(blur.reduced(), blur.across({0, static_cast<double>(width), 0, 1}),
                   blur.down({0, static_cast<double>(height), 0, 1}), {0, width});
    RowScratch scratch;
    scratch.grow(blur.reduced().width, width);
    for (int y = 0; y < height; ++y)
        reader.readRow(y, {0, width}, scratch, result.row(y));
    return result;
}

double worstError(const BgraImage& picture, double sigma, GaussianBlur& blur, WorkerPool& pool) {
    blur.blur(picture.view(), sigma, pool);
    const BgraImage actual = fullSize(blur, picture.width(), picture.height());
    const auto expected = plainlyBlurred(picture, sigma);
    double worst = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const double wanted = expected[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            worst = std::max(worst, std::abs(test::pixelAt(actual, x, y)[1] - wanted));
        }
    }
    return worst;
}

/// White left of and above a corner, and single white lines along all edges of a black picture.
BgraImage harshPicture(int width, int height) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isEdge = x == 0 || y == 0 || x == width - 1 || y == height - 1;
            const bool isBlock = x > width / 3 && x < width / 2 && y > height / 4;
            std::fill_n(test::pixelAt(picture, x, y), 4,
                        isEdge || isBlock ? std::uint8_t{255} : std::uint8_t{0});
        }
    }
    return picture;
}

TEST(GaussianBlurTest, IsWithinOneAndAHalfPercentOfATrueGaussian) {
    WorkerPool pool(2);
    GaussianBlur blur;
    Chance chance(21);
    constexpr double allowed = 0.015 * 255;
    std::vector<BlurCase> cases{{1, 1, 1},     {1, 40, 3.1},    {40, 1, 7},     {2, 3, 50},
                                {160, 90, 1},  {160, 90, 3},    {160, 90, 2.9}, {161, 91, 4.4},
                                {97, 53, 4.5}, {200, 120, 12.7}};
    for (int i = 0; i < 25; ++i)
        cases.push_back({chance.whole(1, 220), chance.whole(1, 150), chance.between(1, i % 2 == 0 ? 6 : 40)});
    for (const auto& [width, height, sigma] : cases) {
        EXPECT_LT(worstError(harshPicture(width, height), sigma, blur, pool), allowed)
            << "harsh " << width << "x" << height << " sigma " << sigma;
        EXPECT_LT(worstError(test::randomPicture(chance, width, height), sigma, blur, pool), allowed)
            << "random " << width << "x" << height << " sigma " << sigma;
    }
}

TEST(GaussianBlurTest, KeepsAPlainColorAsItIs) {
    WorkerPool pool(1);
    GaussianBlur blur;
    BgraImage white(64, 48);
    for (int y = 0; y < 48; ++y)
        std::fill_n(white.row(y), test::bytesOf(64), std::uint8_t{255});
    for (const double sigma : {1.0, 2.0, 7.7, 33.0}) {
        blur.blur(white.view(), sigma, pool);
        const BgraImage result = fullSize(blur, 64, 48);
        for (int y = 0; y < 48; ++y)
            for (int i = 0; i < 64 * 4; ++i)
                ASSERT_EQ(result.row(y)[i], 255) << sigma;
    }
}

TEST(GaussianBlurTest, UsesItsMemoryAgain) {
    WorkerPool pool(1);
    GaussianBlur blur;
    const BgraImage picture = harshPicture(320, 180);
    for (int round = 0; round < 2; ++round) {
        const test::AllocationCounter counter;
        for (const double sigma : {1.0, 4.0, 11.2})
            blur.blur(picture.view(), sigma, pool);
        if (round == 1) {
            EXPECT_EQ(counter.count(), 0U);
        }
    }
}

}  // namespace
}  // namespace tessaloom
