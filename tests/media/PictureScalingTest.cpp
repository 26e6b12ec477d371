// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PictureScaling.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/PixelAt.h"

namespace tessaloom {
namespace {

/// Blue tells the column, green the row, ten levels for each pixel.
BgraImage ramp(int width, int height) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* pixel = picture.row(y) + std::ptrdiff_t{4} * x;
            pixel[0] = static_cast<std::uint8_t>(10 * x);
            pixel[1] = static_cast<std::uint8_t>(10 * y);
            pixel[2] = 77;
            pixel[3] = 255;
        }
    }
    return picture;
}

TEST(PictureScaling, TheSameSizeIsACopy) {
    const BgraImage source = ramp(6, 4);
    BgraImage target(6, 4);
    scaleToFill(source.view(), target);
    for (int y = 0; y < 4; ++y)
        EXPECT_TRUE(std::equal(source.row(y), source.row(y) + 24, target.row(y)));
}

TEST(PictureScaling, EachPixelShowsTheSameSpotOfTheScene) {
    const BgraImage source = ramp(8, 8);
    BgraImage target(4, 4);
    scaleToFill(source.view(), target);
    EXPECT_EQ(test::pixelAt(target, 0, 0)[0], 5) << "half way between the first two";
    EXPECT_EQ(test::pixelAt(target, 3, 0)[0], 65);
    EXPECT_EQ(test::pixelAt(target, 0, 3)[1], 65);
    EXPECT_EQ(test::pixelAt(target, 2, 2)[2], 77);
}

TEST(PictureScaling, GrownPicturesRepeatTheirEdge) {
    const BgraImage source = ramp(2, 2);
    BgraImage target(8, 8);
    scaleToFill(source.view(), target);
    EXPECT_EQ(test::pixelAt(target, 0, 4)[0], 0);
    EXPECT_EQ(test::pixelAt(target, 7, 4)[0], 10);
}

TEST(PictureScaling, WhatIsTooWideIsLeftOutAtBothSides) {
    const BgraImage source = ramp(16, 8);
    BgraImage target(8, 8);
    scaleToFill(source.view(), target);
    EXPECT_EQ(test::pixelAt(target, 0, 0)[0], 40);
    EXPECT_EQ(test::pixelAt(target, 7, 7)[0], 110);
    EXPECT_EQ(test::pixelAt(target, 7, 7)[1], 70);
}

TEST(PictureScaling, WhatIsTooHighIsLeftOutAboveAndBelow) {
    const BgraImage source = ramp(8, 16);
    BgraImage target(8, 8);
    scaleToFill(source.view(), target);
    EXPECT_EQ(test::pixelAt(target, 0, 0)[1], 40);
    EXPECT_EQ(test::pixelAt(target, 7, 7)[1], 110);
}

}  // namespace
}  // namespace tessaloom
