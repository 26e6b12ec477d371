// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/KeystrokePlacement.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(KeystrokePlacement, IsCentredNearTheBottomInTheTexturesShape) {
    const Rect rect = keystrokePlacement({300, 100}, 1000, 500);
    EXPECT_NEAR(rect.height, 40, 1e-4);
    EXPECT_NEAR(rect.width, 120, 1e-4);
    EXPECT_NEAR(rect.x, 440, 1e-4);
    EXPECT_NEAR(rect.maxY(), 470, 1e-4);
}

TEST(KeystrokePlacement, ATextureWithoutHeightCountsAsOneHigh) {
    EXPECT_NEAR(keystrokePlacement({3, 0}, 1000, 500).width, 120, 1e-4);
}

}  // namespace
}  // namespace tessaloom
