// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionRaster.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "render/LogLines.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::LogLines;

/// Raster points, origin bottom left, of the pixels for which `matches` holds.
template <class Matches>
Rect boundsWhere(const CaptionRaster& raster, Matches matches) {
    const BgraImage& picture = raster.pixels;
    int left = picture.width(), top = picture.height(), right = 0, bottom = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (!matches(test::pixelAt(picture, x, y))) continue;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
        }
    }
    return {left / 2.0, raster.layout.size.height - bottom / 2.0, (right - left) / 2.0, (bottom - top) / 2.0};
}

bool isWhite(const std::uint8_t* pixel) {
    return pixel[0] > 128;
}

bool isTouched(const std::uint8_t* pixel) {
    return pixel[3] > 0;
}

TEST(CaptionRasterTest, LeavesRoomForPlateAndShadowAroundALine) {
    const CaptionRaster raster = captionRaster("HEH", "#FFFFFF", false).value();
    const auto& [size, plate, words] = raster.layout;
    ASSERT_EQ(words.size(), 1U);
    EXPECT_EQ(size, (Size{std::ceil(words[0].width) + 176, words[0].height + 120}));
    EXPECT_EQ(raster.pixels.width(), 2 * size.width);
    EXPECT_EQ(raster.pixels.height(), 2 * size.height);
    EXPECT_EQ(plate, (Rect{24, 24, size.width - 48, size.height - 48}));
    EXPECT_EQ(words[0].y, 60);
    EXPECT_NEAR(words[0].midX(), size.width / 2, 1e-9);
    const Rect text = boundsWhere(raster, isWhite);
    EXPECT_GT(text.minX(), words[0].minX());
    EXPECT_LT(text.maxX(), words[0].maxX());
    EXPECT_GT(text.minY(), words[0].minY()) << "the baseline is above the descent";
    EXPECT_LT(text.maxY(), words[0].maxY());
    EXPECT_NEAR(text.height, 90 * 0.72, 8) << "capitals of a font at size 90";
}

TEST(CaptionRasterTest, IsBareWithoutWords) {
    for (const char* text : {"", " ", "    "}) {
        const CaptionRaster raster = captionRaster(text, "#FFFFFF", false).value();
        EXPECT_EQ(raster.layout.size, (Size{176, 210}));
        EXPECT_TRUE(raster.layout.wordRects.empty());
        EXPECT_EQ(boundsWhere(raster, isTouched).width, -raster.pixels.width() / 2.0) << "nothing inside";
    }
}

TEST(CaptionRasterTest, PlacesWordsFromLeftToRightWithABlankBetween) {
    const auto one = captionRaster("mm", "#FFFFFF", false).value().layout;
    const auto joined = captionRaster("mm mm", "#FFFFFF", false).value().layout;
    ASSERT_EQ(joined.wordRects.size(), 2U);
    const double gap = joined.wordRects[1].minX() - joined.wordRects[0].maxX();
    EXPECT_GT(gap, 10);
    EXPECT_LT(gap, 60);
    EXPECT_EQ(joined.wordRects[0].width, one.wordRects[0].width);
    EXPECT_EQ(joined.wordRects[0].y, joined.wordRects[1].y);
}

TEST(CaptionRasterTest, HasNoEmptyWords) {
    const auto plain = captionRaster("one two", "#FFFFFF", false).value().layout;
    EXPECT_EQ(captionRaster(" one   two ", "#FFFFFF", false).value().layout, plain);
}

TEST(CaptionRasterTest, WrapsCentredLinesFromTheTop) {
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += "wording ";
    const auto layout = captionRaster(text, "#FFFFFF", false).value().layout;
    ASSERT_EQ(layout.wordRects.size(), 40U);
    EXPECT_LE(layout.size.width, 2600 + 176);
    EXPECT_GT(layout.size.width, 2600 - layout.wordRects[0].width);
    const double lineHeight = layout.wordRects[0].height;
    EXPECT_EQ(layout.wordRects.front().y, layout.size.height - 60 - lineHeight);
    EXPECT_EQ(layout.wordRects.back().y, 60);
    double lineStart = layout.wordRects[0].minX();
    for (std::size_t i = 1; i < 40; ++i) {
        const Rect& before = layout.wordRects[i - 1];
        const Rect& word = layout.wordRects[i];
        if (word.y == before.y) continue;
        EXPECT_EQ(word.y, before.y - lineHeight);
        EXPECT_NEAR(lineStart + before.maxX(), layout.size.width, 1e-6)
            << "as much on the right as on the left";
        lineStart = word.minX();
    }
}

TEST(CaptionRasterTest, LeavesAVeryLongWordWhole) {
    const auto layout = captionRaster("a " + std::string(50, 'W') + " b", "#FFFFFF", false).value().layout;
    ASSERT_EQ(layout.wordRects.size(), 3U);
    EXPECT_GT(layout.wordRects[1].width, 2600);
    EXPECT_EQ(layout.size.width, std::ceil(layout.wordRects[1].width) + 176);
    EXPECT_GT(layout.wordRects[0].y, layout.wordRects[1].y);
    EXPECT_GT(layout.wordRects[1].y, layout.wordRects[2].y);
}

TEST(CaptionRasterTest, IsSkippedWhenOneWordIsWiderThanAnyRaster) {
    const LogLines log;
    EXPECT_FALSE(captionRaster(std::string(5000, 'x'), "#FFFFFF", false).has_value());
    ASSERT_EQ(LogLines::lines.size(), 1);
    EXPECT_TRUE(LogLines::lines.front().startsWith("Raster skipped: "));
}

TEST(CaptionRasterTest, DrawsAParagraphOfAThousandLettersAndSkipsAnEndlessOne) {
    const auto paragraph = [](int letters) {
        std::string text;
        while (static_cast<int>(text.size()) < letters)
            text += "spoken ";
        return text;
    };
    EXPECT_TRUE(captionRaster(paragraph(1000), "#FFFFFF", false).has_value());
    const LogLines log;
    const bool isDrawn = captionRaster(paragraph(5000), "#FFFFFF", false).has_value();
    EXPECT_EQ(LogLines::lines.size(), isDrawn ? 0 : 1);
    EXPECT_FALSE(captionRaster(paragraph(20000), "#FFFFFF", false).has_value());
}

TEST(CaptionRasterTest, DrawsInItsColorAndInCharcoalForABadOne) {
    const CaptionRaster red = captionRaster("I", "#FF0000", false).value();
    const Rect body = boundsWhere(red, [](const std::uint8_t* pixel) { return pixel[2] == 255; });
    EXPECT_GT(body.height, 50);
    EXPECT_EQ(boundsWhere(red, [](const std::uint8_t* pixel) { return pixel[1] > 0; }).width,
              -red.pixels.width() / 2.0);
    const CaptionRaster bad = captionRaster("I", "no colour", false).value();
    const std::uint8_t* pixel = test::pixelAt(bad.pixels, bad.pixels.width() / 2, bad.pixels.height() / 2);
    EXPECT_NEAR(pixel[2], 0.11 * 255, 1);
    EXPECT_EQ(pixel[3], 255);
}

TEST(CaptionRasterTest, ShowsCapitalsByUnicodeRules) {
    const auto layoutOf = [](const char* text, bool uppercase) {
        return captionRaster(text, "#FFFFFF", uppercase).value().layout;
    };
    EXPECT_EQ(layoutOf("straße école", true), layoutOf("STRASSE ÉCOLE", false));
    EXPECT_NE(layoutOf("straße école", true), layoutOf("straße école", false));
}

TEST(CaptionRasterTest, CastsASoftShadowDownwards) {
    const CaptionRaster raster = captionRaster("I", "#FFFFFF", false).value();
    const Rect text = boundsWhere(raster, isWhite);
    const Rect all = boundsWhere(raster, [](const std::uint8_t* pixel) { return pixel[3] > 2; });
    const double below = text.minY() - all.minY();
    const double above = all.maxY() - text.maxY();
    EXPECT_NEAR(below - above, 4, 1) << "two points further below, two less above";
    EXPECT_NEAR((below + above) / 2, 9, 3);
    EXPECT_GT(all.minY(), 24) << "it ends inside the margin";
    const int y = static_cast<int>(2 * (raster.layout.size.height - text.midY()));
    int last = 255;
    for (int x = static_cast<int>(2 * text.maxX()) + 2; x < 2 * all.maxX(); ++x) {
        const std::uint8_t* pixel = test::pixelAt(raster.pixels, x, y);
        ASSERT_EQ(pixel[0] + pixel[1] + pixel[2], 0) << "black";
        ASSERT_LE(pixel[3], last) << "fading";
        last = pixel[3];
    }
}

TEST(CaptionRasterTest, MeasuresAndDrawsAnyScript) {
    for (const char* text :
         {"مرحبا بالعالم اليوم", "नमस्ते दुनिया", "こんにちは 世界", "👩‍👩‍👧 🎉 ok 🇩🇪",
          "שלום 123 abc", "a\u0301\u0327 \u200b x", "bro\xC3 ken \xFF", "tab\there new\nline \u2028 end"}) {
        const CaptionRaster raster = captionRaster(text, "#FFFFFF", true).value();
        EXPECT_GT(boundsWhere(raster, isTouched).width, 20) << text;
        for (const Rect& word : raster.layout.wordRects) {
            EXPECT_GE(word.minX(), 88 - 1e-6) << text;
            EXPECT_LE(word.maxX(), raster.layout.size.width - 88 + 1) << text;
            EXPECT_GE(word.height, 90) << text;
        }
    }
}

TEST(CaptionRasterTest, FillsRightToLeftLinesFromTheRight) {
    const auto words = captionRaster("שלום עולם", "#FFFFFF", false).value().layout.wordRects;
    ASSERT_EQ(words.size(), 2U);
    EXPECT_GT(words[0].minX(), words[1].maxX());
}

}  // namespace
}  // namespace tessaloom
