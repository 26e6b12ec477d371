// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionDrawing.h"

#include <gtest/gtest.h>

#include "render/CaptionPlacement.h"

namespace tessaloom {
namespace {

constexpr float canvasWidth = 1920;
constexpr float canvasHeight = 1080;

const CaptionLayout layout{{476, 220}, {24, 24, 428, 172}, {{88, 60, 100, 100}, {210, 60, 178, 100}}};

CaptionChip chipFor(CaptionHighlight highlight, std::optional<int> activeWord) {
    CaptionChip chip;
    chip.text = " one  two ";
    chip.alpha = 0.5F;
    chip.activeWord = activeWord;
    chip.highlight = highlight;
    chip.bgHex = "#0000FF";
    chip.bgAlpha = 0.25F;
    chip.highlightHex = "#FF0000";
    return chip;
}

CaptionDrawing drawingOf(const CaptionChip& chip) {
    return captionDrawing(chip, layout, canvasWidth, canvasHeight, std::nullopt);
}

CaptionPlacement placementOf(const CaptionChip& chip) {
    return captionPlacement(chip, layout.size, canvasWidth, canvasHeight, std::nullopt);
}

void expectRect(const Float4& actual, const Rect& expected) {
    EXPECT_NEAR(actual.x, expected.x, 0.001);
    EXPECT_NEAR(actual.y, expected.y, 0.001);
    EXPECT_NEAR(actual.z, expected.width, 0.001);
    EXPECT_NEAR(actual.w, expected.height, 0.001);
}

TEST(CaptionDrawingTest, LaysThePlateUnderTheText) {
    const CaptionChip chip = chipFor(CaptionHighlight::none, 0);
    const CaptionDrawing drawing = drawingOf(chip);
    const auto [rect, scale] = placementOf(chip);
    expectRect(drawing.text.rect, rect);
    EXPECT_EQ(drawing.text.meta, (Float4{canvasWidth, canvasHeight, 0.5F, 0}));
    ASSERT_TRUE(drawing.plate);
    expectRect(drawing.plate->rect, {rect.x + 24 * scale, rect.y + 24 * scale, 428 * scale, 172 * scale});
    EXPECT_EQ(drawing.plate->color, (Float4{0, 0, 1, 0.25F}));
    EXPECT_EQ(drawing.plate->meta, (Float4{canvasWidth, canvasHeight, 30 * scale, 0.5F}));
    EXPECT_FALSE(drawing.underline || drawing.boxedWord);
}

TEST(CaptionDrawingTest, HasNoPlateWhenNoneIsWanted) {
    CaptionChip chip = chipFor(CaptionHighlight::none, std::nullopt);
    chip.plate = CaptionPlate::none;
    EXPECT_FALSE(drawingOf(chip).plate);
}

TEST(CaptionDrawingTest, UnderlinesAcrossTheLowerEdgeOfTheWord) {
    const CaptionChip chip = chipFor(CaptionHighlight::underline, 1);
    const CaptionDrawing drawing = drawingOf(chip);
    const auto [rect, scale] = placementOf(chip);
    ASSERT_TRUE(drawing.underline);
    // Its upper edge is 60 - 4.95 + 9.9 raster points above the raster's lower one.
    expectRect(drawing.underline->rect,
               {rect.x + 210 * scale, rect.y + (220 - 64.95) * scale, 178 * scale, 9.9 * scale});
    EXPECT_EQ(drawing.underline->color, (Float4{1, 0, 0, 1}));
    EXPECT_FLOAT_EQ(drawing.underline->meta.z, 4.95F * scale);
    EXPECT_EQ(drawing.underline->meta.w, 0.5F);
    EXPECT_FALSE(drawing.boxedWord);
}

TEST(CaptionDrawingTest, PutsTheBoxedWordOverItsPlaceInTheLine) {
    const CaptionChip chip = chipFor(CaptionHighlight::box, 1);
    const CaptionDrawing drawing = drawingOf(chip);
    const auto [rect, scale] = placementOf(chip);
    ASSERT_TRUE(drawing.boxedWord);
    EXPECT_EQ(drawing.boxedWord->word, "two");
    expectRect(drawing.boxedWord->chip.rect, {rect.x + (210 - 14.4) * scale, rect.y + (60 - 7.92) * scale,
                                              (178 + 28.8) * scale, (100 + 15.84) * scale});
    EXPECT_EQ(drawing.boxedWord->chip.meta, drawing.text.meta);
    EXPECT_FALSE(drawing.underline);
}

TEST(CaptionDrawingTest, MarksNoWordThatTheRasterDoesNotHave) {
    for (const std::optional<int> index : {std::optional<int>(), std::optional(2), std::optional(-1)}) {
        for (const CaptionHighlight highlight : {CaptionHighlight::box, CaptionHighlight::underline}) {
            const CaptionDrawing drawing = drawingOf(chipFor(highlight, index));
            EXPECT_FALSE(drawing.underline || drawing.boxedWord);
            EXPECT_GT(drawing.text.rect.z, 0);
        }
    }
}

TEST(CaptionDrawingTest, MarksNoWordThatTheTextDoesNotHave) {
    CaptionChip chip = chipFor(CaptionHighlight::box, 1);
    chip.text = "one";
    EXPECT_FALSE(drawingOf(chip).boxedWord);
}

}  // namespace
}  // namespace tessaloom
