// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/BareSpot.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr PixelRect screen{0, 0, 1000, 800};

TEST(BareSpot, OfABareScreenIsInTheMiddleOfTheArea) {
    EXPECT_EQ(bareSpotNear({100, 200, 50, 50}, screen, {}), (PixelRect{125, 225, 1, 1}));
}

TEST(BareSpot, LiesOutsideOfAWindowAndItsShadowOnTheNearestSide) {
    const PixelRect window{400, 300, 200, 100};
    EXPECT_EQ(bareSpotNear({400, 300, 200, 30}, screen, {window}), (PixelRect{500, 267, 1, 1}));
    EXPECT_EQ(bareSpotNear({400, 370, 200, 30}, screen, {window}), (PixelRect{500, 432, 1, 1}));
    EXPECT_EQ(bareSpotNear({400, 300, 20, 100}, screen, {window}), (PixelRect{367, 350, 1, 1}));
    EXPECT_EQ(bareSpotNear({580, 300, 20, 100}, screen, {window}), (PixelRect{632, 350, 1, 1}));
}

TEST(BareSpot, MayBeFarAway) {
    const std::vector<PixelRect> windows{{0, 0, 1000, 400}, {0, 350, 900, 450}};
    EXPECT_EQ(bareSpotNear({0, 0, 100, 100}, screen, windows), (PixelRect{932, 432, 1, 1}));
}

TEST(BareSpot, IsNowhereOnACoveredScreen) {
    EXPECT_FALSE(bareSpotNear({0, 0, 100, 100}, screen, {{0, 0, 500, 800}, {500, 0, 500, 800}}));
}

}  // namespace
}  // namespace tessaloom
