// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/WordChip.h"

#include <gtest/gtest.h>

#include <array>

#include "render/CaptionRaster.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

/// Red, green and blue of the capital I in the middle of its box.
std::array<int, 3> letterColorOn(const char* boxColor) {
    const OverlayRaster chip = wordChip("I", boxColor, wordChipPadding, wordChipRadius, false).value();
    const std::uint8_t* pixel = test::pixelAt(chip.pixels, chip.pixels.width() / 2, chip.pixels.height() / 2);
    return {pixel[2], pixel[1], pixel[0]};
}

TEST(WordChipTest, IsTheWordsRectangleGrownByItsPadding) {
    const Rect word = captionRaster("Word", "#FFFFFF", false).value().layout.wordRects.at(0);
    const OverlayRaster chip = wordChip("Word", "#0000FF", 14.4, 14, false).value();
    EXPECT_NEAR(chip.size.width, word.width + 28.8, 1);
    EXPECT_NEAR(chip.size.height, word.height + 15.84, 1e-9);
}

TEST(WordChipTest, FillsItsBoxButForTheRoundedCorners) {
    const OverlayRaster chip = wordChip("Word", "#0000FF", 14.4, 14, false).value();
    const int middle = chip.pixels.width() / 2;
    for (const int y : {0, chip.pixels.height() - 3}) {
        EXPECT_EQ(test::pixelAt(chip.pixels, 0, y)[3], 0) << "corner";
        const std::uint8_t* edge = test::pixelAt(chip.pixels, middle, y + 1);
        EXPECT_EQ(edge[0], 255);
        EXPECT_EQ(edge[1] + edge[2], 0);
        EXPECT_EQ(edge[3], 255);
    }
}

TEST(WordChipTest, WritesNearBlackOnLightBoxesAndWhiteOnOthers) {
    const std::array<int, 3> nearBlack{18, 18, 20};
    const std::array<int, 3> white{255, 255, 255};
    EXPECT_EQ(letterColorOn("#FFD60A"), nearBlack);
    EXPECT_EQ(letterColorOn("#FFFFFF"), nearBlack);
    EXPECT_EQ(letterColorOn("#8D8D8D"), nearBlack) << "just above a luminance of 0.55";
    EXPECT_EQ(letterColorOn("#8C8C8C"), white) << "just below";
    EXPECT_EQ(letterColorOn("#0A84FF"), white);
    EXPECT_EQ(letterColorOn("not a colour"), white) << "charcoal";
}

TEST(WordChipTest, WritesCapitalsWhenAsked) {
    EXPECT_EQ(wordChip("word", "#FFD60A", 14.4, 14, true).value().size,
              wordChip("WORD", "#FFD60A", 14.4, 14, false).value().size);
}

TEST(WordChipTest, IsNothingForAWordWiderThanAnyRaster) {
    EXPECT_FALSE(wordChip(std::string(5000, 'x'), "#FFD60A", 14.4, 14, false).has_value());
}

}  // namespace
}  // namespace tessaloom
