// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ChangedArea.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

class ChangedAreaTest : public ::testing::Test {
  protected:
    ChangedAreaTest() { area_.clear(101, 53); }

    ChangedArea area_;
};

TEST_F(ChangedAreaTest, StartsEmpty) {
    EXPECT_TRUE(area_.empty());
    EXPECT_TRUE(area_.columns(48).empty());
}

TEST_F(ChangedAreaTest, HoldsEveryPixelARectangleTouchesFromAnEvenColumnToAnEvenColumn) {
    area_.add({20.9, 15.9, 3.2, 0.2});
    EXPECT_EQ(area_.columns(0), (PixelSpan{20, 26}));
    EXPECT_EQ(area_.columns(16), (PixelSpan{20, 26}));
    EXPECT_TRUE(area_.columns(32).empty());
    EXPECT_FALSE(area_.empty());
}

TEST_F(ChangedAreaTest, EndsWithTheCanvas) {
    area_.add({-50, -50, 51, 51});
    EXPECT_EQ(area_.columns(0), (PixelSpan{0, 2}));
    area_.add({99.5, 52.5, 400, 400});
    EXPECT_EQ(area_.columns(48), (PixelSpan{98, 101}));
    EXPECT_TRUE(area_.columns(16).empty());
}

TEST_F(ChangedAreaTest, LeavesOutWhatLiesBesideTheCanvas) {
    area_.add({-30, 10, 20, 20});
    area_.add({10, 60, 20, 20});
    EXPECT_TRUE(area_.empty());
}

TEST_F(ChangedAreaTest, JoinsRectanglesInTheSameBandOnly) {
    area_.add({10, 2, 4, 4});
    area_.add({60, 8, 4, 14});
    EXPECT_EQ(area_.columns(0), (PixelSpan{10, 64}));
    EXPECT_EQ(area_.columns(16), (PixelSpan{60, 64}));
}

TEST_F(ChangedAreaTest, CanBeTheWholeCanvasAndEmptyAgain) {
    area_.addAll();
    EXPECT_EQ(area_.columns(0), (PixelSpan{0, 101}));
    EXPECT_EQ(area_.columns(48), (PixelSpan{0, 101}));
    area_.clear(40, 8);
    EXPECT_TRUE(area_.empty());
}

}  // namespace
}  // namespace tessaloom
