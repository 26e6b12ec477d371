// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GradientColors.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "support/PixelAt.h"

namespace tessaloom {
namespace {

/// A grey picture of 120x80.
GradientColors colorsOf(const std::function<int(int x, int y)>& shade) {
    BgraImage picture(120, 80);
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 120; ++x)
            for (int channel = 0; channel < 3; ++channel)
                test::pixelAt(picture, x, y)[channel] = static_cast<std::uint8_t>(shade(x, y));
    GradientColors colors;
    colors.add(picture.view());
    return colors;
}

TEST(GradientColors, ASlowAndAQuickSlopeAreGradients) {
    EXPECT_TRUE(colorsOf([](int x, int) { return 100 + x / 8; }).contains(0x6A6A6A));
    EXPECT_TRUE(colorsOf([](int, int y) { return 20 + 2 * y; }).contains(0x686868));
}

TEST(GradientColors, FlatAreasWithEdgesAreNot) {
    const GradientColors colors = colorsOf([](int x, int) { return x / 10 % 2 == 0 ? 100 : 106; });
    EXPECT_FALSE(colors.contains(0x646464));
    EXPECT_FALSE(colors.contains(0x6A6A6A));
}

TEST(GradientColors, NoiseIsNot) {
    std::mt19937 random(1);
    const GradientColors colors = colorsOf([&](int, int) { return 100 + static_cast<int>(random() % 24); });
    for (std::uint32_t shade = 100; shade < 124; ++shade)
        EXPECT_FALSE(colors.contains(shade * 0x010101)) << shade;
}

TEST(GradientColors, TheMajorityDecides) {
    const auto flatBelow = [](int border) {
        return colorsOf([border](int x, int y) { return y < border ? 60 + x : 100; }).contains(0x646464);
    };
    EXPECT_TRUE(flatBelow(80));
    EXPECT_FALSE(flatBelow(20));
}

TEST(GradientColors, ClearedItKnowsNone) {
    GradientColors colors = colorsOf([](int x, int) { return 60 + x; });
    ASSERT_TRUE(colors.contains(0x646464));
    colors.clear();
    EXPECT_FALSE(colors.contains(0x646464));
}

}  // namespace
}  // namespace tessaloom
