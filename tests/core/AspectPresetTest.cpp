// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AspectPreset.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessaloom {
namespace {

TEST(AspectPreset, EachHasItsRatio) {
    EXPECT_EQ(canvasRatio(AspectPreset::wide, 1), 16.0 / 9.0);
    EXPECT_EQ(canvasRatio(AspectPreset::square, 2), 1);
    EXPECT_EQ(canvasRatio(AspectPreset::portrait, 2), 0.8);
    EXPECT_EQ(canvasRatio(AspectPreset::vertical, 2), 9.0 / 16.0);
}

TEST(AspectPreset, NativeIsTheRecordingsOwnOrElseWide) {
    EXPECT_EQ(canvasRatio(AspectPreset::native, 1.6), 1.6);
    EXPECT_EQ(canvasRatio(AspectPreset::native, 0), 16.0 / 9.0);
    EXPECT_EQ(canvasRatio(AspectPreset::native, -2), 16.0 / 9.0);
    EXPECT_EQ(canvasRatio(AspectPreset::native, std::numeric_limits<double>::quiet_NaN()), 16.0 / 9.0);
}

TEST(AspectPreset, RawStringsReadBack) {
    EXPECT_EQ(rawString(AspectPreset::portrait), "portrait");
    EXPECT_EQ(fromRawString<AspectPreset>("vertical"), AspectPreset::vertical);
    EXPECT_FALSE(fromRawString<AspectPreset>("Vertical"));
}

}  // namespace
}  // namespace tessaloom
