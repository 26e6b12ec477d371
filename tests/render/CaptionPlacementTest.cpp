// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionPlacement.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaloom {
namespace {

// On a canvas 1000 high the raster of this chip is drawn at a scale of 0.5.
CaptionChip chip(float verticalPosition = 1) {
    CaptionChip caption;
    caption.fontScale = 0.5F * 90 / 56;
    caption.verticalPosition = verticalPosition;
    return caption;
}

void expectRect(const CaptionPlacement& placement, const Rect& expected) {
    EXPECT_NEAR(placement.rect.x, expected.x, 1e-2);
    EXPECT_NEAR(placement.rect.y, expected.y, 1e-2);
    EXPECT_NEAR(placement.rect.width, expected.width, 1e-2);
    EXPECT_NEAR(placement.rect.height, expected.height, 1e-2);
}

bool overlaps(const Rect& a, const Rect& b) {
    return a.minX() < b.maxX() && b.minX() < a.maxX() && a.minY() < b.maxY() && b.minY() < a.maxY();
}

TEST(CaptionPlacement, AFontScaleOfOneIsAFontOf56ThousandthsOfTheHeight) {
    CaptionChip caption;
    caption.fontScale = 1;
    EXPECT_NEAR(captionPlacement(caption, {100, 90}, 2000, 1000, {}).rect.height, 56, 1e-3);
}

TEST(CaptionPlacement, RestsBetweenTheTopAndBottomMargins) {
    const Size raster{800, 200};
    expectRect(captionPlacement(chip(1), raster, 2000, 1000, {}), {800, 770, 400, 100});
    expectRect(captionPlacement(chip(0), raster, 2000, 1000, {}), {800, 80, 400, 100});
    expectRect(captionPlacement(chip(0.5F), raster, 2000, 1000, {}), {800, 425, 400, 100});
    expectRect(captionPlacement(chip(7), raster, 2000, 1000, {}), {800, 770, 400, 100});
    expectRect(captionPlacement(chip(-7), raster, 2000, 1000, {}), {800, 80, 400, 100});
}

TEST(CaptionPlacement, AWideLineShrinksToNineTenthsOfTheWidth) {
    const CaptionPlacement placement = captionPlacement(chip(1), {7200, 200}, 2000, 1000, {});
    expectRect(placement, {100, 820, 1800, 50});
    EXPECT_NEAR(placement.scale, 0.25, 1e-5);
}

TEST(CaptionPlacement, ATallRasterStaysOnTheCanvas) {
    expectRect(captionPlacement(chip(1), {400, 2400}, 2000, 1000, {}), {900, 0, 200, 1200});
}

TEST(CaptionPlacement, IgnoresABubbleItDoesNotMeet) {
    const Rect above{800, 100, 400, 649};
    expectRect(captionPlacement(chip(1), {800, 200}, 2000, 1000, above), {800, 770, 400, 100});
    const Rect below{800, 201, 400, 100};
    expectRect(captionPlacement(chip(0), {800, 200}, 2000, 1000, below), {800, 80, 400, 100});
}

TEST(CaptionPlacement, OnAWideCanvasItMovesSideways) {
    const Rect right{1500, 700, 400, 250};
    expectRect(captionPlacement(chip(1), {800, 200}, 2000, 1000, right), {590, 770, 400, 100});
    const Rect left{100, 700, 400, 250};
    expectRect(captionPlacement(chip(1), {800, 200}, 2000, 1000, left), {1010, 770, 400, 100});
}

TEST(CaptionPlacement, ALineWiderThanTheFreeSpanNarrowsDownToIt) {
    const Rect right{1500, 700, 400, 250};
    const CaptionPlacement placement = captionPlacement(chip(1), {3200, 200}, 2000, 1000, right);
    const double span = 1500 - 20 - 100;
    expectRect(placement, {100, 870 - 100 * span / 1600, span, 100 * span / 1600});
    EXPECT_NEAR(placement.scale, 0.5 * span / 1600, 1e-4);
}

TEST(CaptionPlacement, WithoutRoomAtTheSideItMovesTheShorterWay) {
    const Rect middle{700, 380, 600, 200};
    expectRect(captionPlacement(chip(0.5F), {800, 200}, 2000, 1000, middle), {800, 260, 400, 100});
    const Rect higher{700, 300, 600, 200};
    expectRect(captionPlacement(chip(0.5F), {800, 200}, 2000, 1000, higher), {800, 520, 400, 100});
}

TEST(CaptionPlacement, ATieGoesAbove) {
    // Up by 170 or down by 170.
    const Rect middle{700, 375, 600, 200};
    expectRect(captionPlacement(chip(0.5F), {800, 200}, 2000, 1000, middle), {800, 255, 400, 100});
}

TEST(CaptionPlacement, ATallCanvasNeverMovesItSideways) {
    const Rect rightCorner{700, 1500, 270, 270};
    const CaptionPlacement placement = captionPlacement(chip(1), {400, 100}, 1000, 1778, rightCorner);
    EXPECT_NEAR(placement.rect.midX(), 500, 1e-2);
    EXPECT_NEAR(placement.rect.maxY(), 1500 - 0.02 * 1778, 1e-2);
}

TEST(CaptionPlacement, WhereOnlyOneSideFitsItTakesThat) {
    const Rect toTheTop{0, 0, 1000, 600};
    expectRect(captionPlacement(chip(0), {400, 200}, 1000, 1000, toTheTop), {400, 620, 200, 100});
    const Rect toTheBottom{0, 400, 1000, 600};
    expectRect(captionPlacement(chip(1), {400, 200}, 1000, 1000, toTheBottom), {400, 280, 200, 100});
}

TEST(CaptionPlacement, WhereNothingFitsItStays) {
    const Rect everywhere{0, 50, 1000, 900};
    expectRect(captionPlacement(chip(1), {400, 200}, 1000, 1000, everywhere), {400, 770, 200, 100});
}

TEST(CaptionPlacement, KeepsClearOfAnyBubbleThatLeavesRoom) {
    std::mt19937 random(8);
    std::uniform_real_distribution<double> sizes(100, 400);
    std::uniform_real_distribution<double> places(0, 1);
    for (int round = 0; round < 1000; ++round) {
        const double side = sizes(random);
        const Rect keepOut{places(random) * (1600 - side), places(random) * (900 - side), side, side};
        CaptionChip caption;
        caption.verticalPosition = static_cast<float>(places(random));
        const CaptionPlacement placement =
            captionPlacement(caption, {sizes(random) * 8, 130}, 1600, 900, keepOut);
        ASSERT_FALSE(overlaps(placement.rect, keepOut)) << "round " << round;
        ASSERT_GE(placement.rect.minY(), 0);
        ASSERT_LE(placement.rect.maxY(), 900 + 1e-3);
    }
}

}  // namespace
}  // namespace tessaloom
