// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/OverlayRaster.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <cmath>

#include "render/KeystrokeChipRaster.h"
#include "render/LogLines.h"
#include "support/PixelAt.h"

namespace tessaloom {
namespace {

using test::LogLines;

std::optional<OverlayRaster> whiteRaster(Size size, double scale) {
    return drawRaster(size, scale,
                      [&](QPainter& painter) { painter.fillRect(QRectF(0, 0, 1e6, 1e6), Qt::white); });
}

TEST(OverlayRasterTest, RoundsItsPixelSizeUp) {
    const OverlayRaster raster = whiteRaster({10.2, 0.3}, 2).value();
    EXPECT_EQ(raster.pixels.width(), 21);
    EXPECT_EQ(raster.pixels.height(), 1);
    EXPECT_EQ(raster.size, (Size{10.2, 0.3}));
}

TEST(OverlayRasterTest, IsPremultipliedBlueGreenRedAlpha) {
    const OverlayRaster raster = drawRaster({1, 1}, 1, [](QPainter& painter) {
                                     painter.fillRect(0, 0, 1, 1, QColor(255, 128, 0, 128));
                                 }).value();
    const std::uint8_t* pixel = raster.pixels.row(0);
    EXPECT_EQ(pixel[0], 0);
    EXPECT_NEAR(pixel[1], 64, 1);
    EXPECT_EQ(pixel[2], 128);
    EXPECT_EQ(pixel[3], 128);
}

TEST(OverlayRasterTest, StartsClear) {
    const OverlayRaster raster = drawRaster({8, 8}, 2, [](QPainter&) {}).value();
    for (int y = 0; y < 16; ++y) {
        for (int i = 0; i < 64; ++i)
            ASSERT_EQ(raster.pixels.row(y)[i], 0);
    }
}

TEST(OverlayRasterTest, SkipsSizesOutsideTheLimitsAndSaysSo) {
    const struct {
        Size size;
        bool drawn;
        QString line;
    } cases[] = {
        {{0, 10}, false, "Raster skipped: 0x20 px is outside texture limits"},
        {{10, -1}, false, "Raster skipped: 20x-2 px is outside texture limits"},
        {{8192.1, 1}, false, "Raster skipped: 16385x2 px is outside texture limits"},
        {{1, 8193}, false, "Raster skipped: 2x16386 px is outside texture limits"},
        {{8192, 1}, true, {}},
        {{0.1, 0.1}, true, {}},
    };
    for (const auto& [size, drawn, line] : cases) {
        const LogLines log;
        EXPECT_EQ(whiteRaster(size, 2).has_value(), drawn);
        EXPECT_EQ(LogLines::lines, line.isNull() ? QStringList() : QStringList(line));
    }
}

TEST(OverlayRasterTest, NamesARasterThatWasNotKept) {
    const LogLines log;
    logRasterNotKept(20, 30);
    EXPECT_EQ(LogLines::lines, QStringList("Raster failed: could not allocate a 20x30 texture"));
}

bool isWhite(const std::uint8_t* pixel) {
    return pixel[0] > 200 && pixel[1] > 200 && pixel[2] > 200;
}

/// The rectangle of raster points that holds all white pixels.
Rect whiteBounds(const BgraImage& picture) {
    int left = picture.width(), top = picture.height(), right = 0, bottom = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (!isWhite(test::pixelAt(picture, x, y))) continue;
            left = std::min(left, x);
            top = std::min(top, y);
            right = std::max(right, x + 1);
            bottom = std::max(bottom, y + 1);
        }
    }
    return {left / rasterScale, top / rasterScale, (right - left) / rasterScale,
            (bottom - top) / rasterScale};
}

TEST(KeystrokeChipRasterTest, IsADarkRoundedPlateAroundWhiteText) {
    const OverlayRaster chip = keystrokeChipRaster("HHH").value();
    EXPECT_EQ(chip.pixels.width(), chip.size.width * 2);
    EXPECT_EQ(chip.pixels.height(), chip.size.height * 2);
    EXPECT_EQ(chip.size.width, std::ceil(chip.size.width));
    EXPECT_EQ(chip.size.height, std::ceil(chip.size.height));
    EXPECT_EQ(chip.pixels.row(0)[3], 0) << "the corner is outside the plate";
    const std::uint8_t* plate = test::pixelAt(chip.pixels, chip.pixels.width() / 2, 20);
    EXPECT_NEAR(plate[3], 0.72 * 255, 1);
    EXPECT_EQ(plate[0] + plate[1] + plate[2], 0);
}

TEST(KeystrokeChipRasterTest, LeavesPaddingOnAllSides) {
    const OverlayRaster chip = keystrokeChipRaster("HHH").value();
    const Rect text = whiteBounds(chip.pixels);
    // The letters have side bearings, and the line is higher than a capital.
    EXPECT_NEAR(text.minX(), 90, 20);
    EXPECT_NEAR(chip.size.width - text.maxX(), 90, 20);
    EXPECT_GE(text.minY(), 54);
    EXPECT_GE(chip.size.height - text.maxY(), 54);
    EXPECT_NEAR(text.height, 120 * 0.72, 10) << "capitals of a font at size 120";
}

TEST(KeystrokeChipRasterTest, GrowsWithItsTextInWidthOnly) {
    const Size one = keystrokeChipRaster("A").value().size;
    const Size three = keystrokeChipRaster("AAA").value().size;
    EXPECT_NEAR(three.width - 180, 3 * (one.width - 180), 3);
    EXPECT_EQ(three.height, one.height);
}

TEST(KeystrokeChipRasterTest, DrawsAnEmptyLabelAsABarePlate) {
    const OverlayRaster chip = keystrokeChipRaster("").value();
    EXPECT_EQ(chip.size.width, 180);
}

TEST(KeystrokeChipRasterTest, IsNothingWhenTheTextIsFarTooLong) {
    const LogLines log;
    EXPECT_FALSE(keystrokeChipRaster(std::string(1000, 'W')).has_value());
    ASSERT_EQ(LogLines::lines.size(), 1);
    EXPECT_TRUE(LogLines::lines.front().startsWith("Raster skipped: "));
}

}  // namespace
}  // namespace tessaloom
