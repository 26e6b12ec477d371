// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ContentGeometry.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(ContentGeometry, FillsTheCanvasOfItsOwnShape) {
    EXPECT_EQ(contentGeometry(1600, 900, 16.0F / 9.0F, 0, 0), (ContentGeometry{{0, 0, 1600, 900}, 0}));
}

TEST(ContentGeometry, TheMarginIsMeasuredOnTheWidthAndTheRestIsCentred) {
    EXPECT_EQ(contentGeometry(1000, 1000, 2, 0.125F, 0), (ContentGeometry{{125, 312.5, 750, 375}, 0}));
    EXPECT_EQ(contentGeometry(1000, 1000, 0.5F, 0.125F, 0), (ContentGeometry{{312.5, 125, 375, 750}, 0}));
    EXPECT_EQ(contentGeometry(1000, 2000, 0.5F, 0.125F, 0), (ContentGeometry{{125, 250, 750, 1500}, 0}));
}

TEST(ContentGeometry, WithoutAShapeItIsWide) {
    EXPECT_EQ(contentGeometry(1600, 1600, 0, 0, 0), contentGeometry(1600, 1600, 1.7777778F, 0, 0));
    EXPECT_EQ(contentGeometry(1600, 1600, -1, 0, 0), contentGeometry(1600, 1600, 1.7777778F, 0, 0));
}

TEST(ContentGeometry, AMarginBeyondTheCanvasLeavesNothing) {
    EXPECT_EQ(contentGeometry(1000, 800, 1.5F, 0.6F, 0.1F), (ContentGeometry{{500, 400, 0, 0}, 0}));
    EXPECT_EQ(contentGeometry(1000, 800, 0.5F, 0.6F, 0.1F), (ContentGeometry{{500, 400, 0, 0}, 0}));
}

TEST(ContentGeometry, ACanvasWithoutFreeHeightIsSquareToItsShape) {
    EXPECT_EQ(contentGeometry(1000, 100, 0.5F, 0.1F, 0), (ContentGeometry{{500, 50, 0, 0}, 0}));
    EXPECT_EQ(contentGeometry(1000, 100, 2, 0.1F, 0), (ContentGeometry{{100, -150, 800, 400}, 0}));
}

TEST(ContentGeometry, TheCornerIsHalfTheShorterSideAtMost) {
    EXPECT_FLOAT_EQ(contentGeometry(1000, 500, 2, 0, 0.01F).cornerRadius, 10);
    EXPECT_FLOAT_EQ(contentGeometry(1000, 500, 2, 0, 0.9F).cornerRadius, 250);
}

}  // namespace
}  // namespace tessaloom
