// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureLevels.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/PixelAt.h"

namespace tessaloom {
namespace {

BgraImage checkerboard(int width, int height) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::fill_n(test::pixelAt(picture, x, y), 4, static_cast<std::uint8_t>((x + y) % 2 * 200));
        }
    }
    return picture;
}

TEST(PictureLevelsTest, GivesTheSmallestThatNeedsNoMagnifying) {
    const PictureLevels levels(checkerboard(100, 64));
    const struct {
        double drawn;
        int level;
    } cases[] = {{500, 100}, {100, 100}, {50.5, 100}, {50, 50}, {26, 50}, {25, 25}, {1, 25}, {0, 25}};
    for (const auto& [drawn, level] : cases)
        EXPECT_EQ(levels.forWidth(drawn).width, level) << drawn;
}

TEST(PictureLevelsTest, AveragesWhatItHalves) {
    const PictureLevels levels(checkerboard(64, 64));
    const BgraView half = levels.forWidth(32);
    ASSERT_EQ(half.width, 32);
    for (int i = 0; i < 32 * 4; ++i)
        ASSERT_EQ(half.row(7)[i], 100);
}

TEST(PictureLevelsTest, KeepsTheLastColumnAndRowOfOddSizes) {
    BgraImage picture(65, 33);
    for (int y = 0; y < 33; ++y)
        std::fill_n(picture.row(y), test::bytesOf(65), std::uint8_t{0});
    for (int y = 0; y < 33; ++y)
        std::fill_n(test::pixelAt(picture, 64, y), 4, std::uint8_t{255});
    std::fill_n(picture.row(32), test::bytesOf(65), std::uint8_t{255});
    const PictureLevels levels(std::move(picture));
    const BgraView half = levels.forWidth(33);
    ASSERT_EQ(half.width, 33);
    ASSERT_EQ(half.height, 17);
    EXPECT_EQ(test::pixelAt(half, 32, 3)[0], 255);
    EXPECT_EQ(half.row(16)[0], 255);
    EXPECT_EQ(test::pixelAt(half, 31, 15)[0], 0);
}

TEST(PictureLevelsTest, LeavesSmallPicturesAlone) {
    const PictureLevels levels(checkerboard(31, 400));
    EXPECT_EQ(levels.forWidth(2).width, 31);
}

}  // namespace
}  // namespace tessaloom
