// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GaussianBlur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "render/PictureReader.h"
#include "render/RandomFrame.h"
#include "render/ReferenceStages.h"
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

int worstError(const BgraImage& picture, double sigma, GaussianBlur& blur, WorkerPool& pool) {
    blur.blur(picture.view(), sigma, pool);
    const BgraImage actual = fullSize(blur, picture.width(), picture.height());
    const BgraImage expected = test::referenceBlur(picture.view(), sigma);
    int worst = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int i = 0; i < picture.width() * 4; ++i)
            worst = std::max(worst, std::abs(actual.row(y)[i] - expected.row(y)[i]));
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
    constexpr int allowed = 3;  // of 255
    std::vector<BlurCase> cases{{1, 1, 1},     {1, 40, 3.1},    {40, 1, 7},     {2, 3, 50},
                                {160, 90, 1},  {160, 90, 3},    {160, 90, 2.9}, {161, 91, 4.4},
                                {97, 53, 4.5}, {200, 120, 12.7}};
    for (int i = 0; i < 25; ++i)
        cases.push_back({chance.whole(1, 220), chance.whole(1, 150), chance.between(1, i % 2 == 0 ? 6 : 40)});
    for (const auto& [width, height, sigma] : cases) {
        EXPECT_LE(worstError(harshPicture(width, height), sigma, blur, pool), allowed)
            << "harsh " << width << "x" << height << " sigma " << sigma;
        EXPECT_LE(worstError(test::randomPicture(chance, width, height), sigma, blur, pool), allowed)
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
