// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ColorPalette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "media/PaletteChoice.h"
#include "support/MovieMaker.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

std::vector<std::uint32_t> paletteOf(const BgraImage& picture, std::size_t size) {
    ColorHistogram histogram;
    histogram.add(picture.view());
    auto palette = choosePalette(histogram.groups(), size);
    std::ranges::sort(palette);
    return palette;
}

TEST(ColorPalette, TheNearestColorIsTheNearestOfAll) {
    std::mt19937 random(1);
    const auto anyColor = [&random] { return static_cast<std::uint32_t>(random()) & 0xFFFFFF; };
    std::vector<std::uint32_t> colors(255);
    std::ranges::generate(colors, anyColor);
    ColorPalette palette(colors);
    for (int i = 0; i < 50'000; ++i) {
        const std::uint32_t color = anyColor() & 0x3F3F3F;
        const int found = squaredDistance(colors[palette.nearest(color)], color);
        for (const std::uint32_t other : colors)
            ASSERT_LE(found, squaredDistance(other, color));
    }
}

TEST(PaletteChoice, ColorsThatAllFitAreKeptExactly) {
    BgraImage picture = test::plainImage(30, 20, {0x12, 0x34, 0x56});
    for (int x = 0; x < 30; ++x)
        for (int channel = 0; channel < 3; ++channel)
            test::pixelAt(picture, x, 3)[channel] = static_cast<std::uint8_t>(8 * x);
    const auto palette = paletteOf(picture, 255);
    EXPECT_EQ(palette.size(), 31U);
    EXPECT_TRUE(std::ranges::binary_search(palette, 0x563412U));
    for (std::uint32_t x = 0; x < 30; ++x)
        EXPECT_TRUE(std::ranges::binary_search(palette, 8 * x * 0x010101U)) << x;
}

TEST(PaletteChoice, ColorsThatAreSeenMoreAreShownBetter) {
    // A thousand greens of which one fills the picture.
    BgraImage picture = test::plainImage(400, 100, {0, 90, 0});
    for (int x = 0; x < 400; ++x) {
        test::pixelAt(picture, x, 0)[1] = static_cast<std::uint8_t>(x % 256);
        test::pixelAt(picture, x, 0)[2] = static_cast<std::uint8_t>(x % 7 * 30);
    }
    EXPECT_TRUE(std::ranges::binary_search(paletteOf(picture, 16), 0x005A00U));
}

TEST(PaletteChoice, APlainPictureNeedsOneColor) {
    EXPECT_EQ(paletteOf(test::plainImage(5, 5, {3, 2, 1}), 255), std::vector<std::uint32_t>{0x010203});
}

}  // namespace
}  // namespace tessaloom
