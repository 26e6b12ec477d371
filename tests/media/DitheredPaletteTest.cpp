// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/DitheredPalette.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/PixelAt.h"

namespace tessaloom {
namespace {

constexpr std::uint32_t grey = 0x010101;

/// All greys are seen in a gradient.
GradientColors allGreys() {
    BgraImage picture(256, 40);
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 256; ++x)
            for (int channel = 0; channel < 3; ++channel)
                test::pixelAt(picture, x, y)[channel] = static_cast<std::uint8_t>(x);
    GradientColors colors;
    colors.add(picture.view());
    return colors;
}

/// The mean level of eight by eight pixels of this colour.
double shownLevel(DitheredPalette& dithered, std::uint32_t color) {
    double sum = 0;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            sum += dithered.palette().colors()[dithered.choose(color, x, y).index] & 0xFF;
    return sum / 64;
}

TEST(DitheredPalette, TheMeanOfAPatternComesNearerThanTheNearestColor) {
    DitheredPalette dithered(ColorPalette({100 * grey, 112 * grey, 124 * grey}), allGreys());
    double missed = 0;
    double missedByNearest = 0;
    for (std::uint32_t level = 100; level <= 124; ++level) {
        const auto wanted = static_cast<double>(level);
        missed += std::abs(shownLevel(dithered, level * grey) - wanted);
        const std::uint32_t nearest =
            dithered.palette().colors()[dithered.palette().nearest(level * grey)] & 0xFF;
        missedByNearest += std::abs(nearest - wanted);
    }
    EXPECT_LT(missed, missedByNearest / 2);
    EXPECT_NEAR(shownLevel(dithered, 106 * grey), 106, 0.5);
}

TEST(DitheredPalette, ColorsOfThePaletteAndThoseBesideThemStayPlain) {
    DitheredPalette dithered(ColorPalette({100 * grey, 112 * grey}), allGreys());
    for (const std::uint32_t level : {100U, 101U, 111U, 112U})
        EXPECT_EQ(shownLevel(dithered, level * grey), level < 106 ? 100 : 112) << level;
}

TEST(DitheredPalette, OutsideOfGradientsNothingIsPatterned) {
    DitheredPalette dithered(ColorPalette({100 * grey, 112 * grey}), GradientColors());
    EXPECT_EQ(shownLevel(dithered, 105 * grey), 100);
    EXPECT_EQ(dithered.choose(105 * grey, 3, 4).aim, 105 * grey);
}

TEST(DitheredPalette, AColorFarAwayIsNoPartner) {
    DitheredPalette dithered(ColorPalette({100 * grey, 240 * grey}), allGreys());
    EXPECT_EQ(shownLevel(dithered, 106 * grey), 100);
}

}  // namespace
}  // namespace tessaloom
