// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/DamageRegion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tessaloom {
namespace {

TEST(DamageRegion, RectanglesGrowToEvenCoordinates) {
    EXPECT_EQ(rectanglesToRead({{3, 5, 4, 4}}, 100, 100), (std::vector<PixelRect>{{2, 4, 6, 6}}));
}

TEST(DamageRegion, WhatLiesOutsideThePictureIsLeftOut) {
    EXPECT_TRUE(rectanglesToRead({{-20, 0, 10, 10}, {100, 0, 5, 5}}, 100, 100).empty());
    EXPECT_EQ(rectanglesToRead({{-5, 90, 10, 50}}, 100, 100), (std::vector<PixelRect>{{0, 90, 6, 10}}));
}

TEST(DamageRegion, NeighboursAreReadTogether) {
    EXPECT_EQ(rectanglesToRead({{0, 0, 10, 10}, {12, 0, 10, 10}}, 1920, 1080),
              (std::vector<PixelRect>{{0, 0, 22, 10}}));
}

TEST(DamageRegion, FarCornersAreReadApart) {
    EXPECT_EQ(rectanglesToRead({{0, 0, 10, 10}, {1900, 1060, 20, 20}}, 1920, 1080).size(), 2U);
}

TEST(DamageRegion, NothingIsLostAndAllFitsIntoThePicture) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<PixelRect> damaged;
        for (int i = 0; i < 40; ++i) {
            damaged.push_back({static_cast<int>(random() % 700) - 30, static_cast<int>(random() % 500) - 30,
                               1 + static_cast<int>(random() % 80), 1 + static_cast<int>(random() % 60)});
        }
        const auto rects = rectanglesToRead(damaged, 640, 480);
        std::size_t area = 0;
        for (const PixelRect& rect : rects) {
            EXPECT_EQ((rect.x | rect.y | rect.width | rect.height) & 1, 0);
            EXPECT_EQ(intersection(rect, {0, 0, 640, 480}), rect);
            area += static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height);
        }
        EXPECT_LE(area, 640U * 480U);
        for (const PixelRect& damage : damaged) {
            const PixelRect part = intersection(damage, {0, 0, 640, 480});
            if (part.width == 0 || part.height == 0) continue;
            EXPECT_TRUE(std::ranges::any_of(
                rects, [&](const PixelRect& rect) { return intersection(part, rect) == part; }));
        }
    }
}

}  // namespace
}  // namespace tessaloom
