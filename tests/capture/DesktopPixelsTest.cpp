// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DesktopPixels.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(DesktopPixels, AreCountedFromTheCornerOfTheScreen) {
    EXPECT_EQ(inDesktopPixels({10, 20, 30, 40}, {0, 0}, 1.5), (Rect{15, 30, 45, 60}));
    EXPECT_EQ(inDesktopPixels({1930, 20, 30, 40}, {1920, 0}, 2), (Rect{1940, 40, 60, 80}));
    EXPECT_EQ(inDesktopPixels({1930, 20, 30, 40}, {1920, 0}, 1), (Rect{1930, 20, 30, 40}));
}

}  // namespace
}  // namespace tessaloom
