// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "export/QualityPreset.h"
#include "export/ResolutionPreset.h"

namespace tessaloom {
namespace {

TEST(ResolutionPreset, FixesTheShortEdgeOfWhateverShape) {
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p720, 16.0 / 9), 1280);
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p1080, 16.0 / 9), 1920);
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p1080, 9.0 / 16), 1920);
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p1440, 1), 1440);
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p2160, 0.8), 2700);
    EXPECT_EQ(outputLongEdge(ResolutionPreset::p720, 0), 72'000);
}

TEST(ResolutionPreset, IsStoredByItsName) {
    EXPECT_EQ(fromRawString<ResolutionPreset>("p2160"), ResolutionPreset::p2160);
    EXPECT_EQ(rawString(ResolutionPreset::p720), "p720");
}

TEST(QualityPreset, GivesBitsPerPixel) {
    EXPECT_EQ(bitsPerPixel(QualityPreset::high), 0.1);
    EXPECT_EQ(bitsPerPixel(QualityPreset::balanced), 0.07);
    EXPECT_EQ(bitsPerPixel(QualityPreset::small), 0.045);
    EXPECT_EQ(fromRawString<QualityPreset>("small"), QualityPreset::small);
}

TEST(QualityPreset, TheBitRateIsCutToWholeBitsAndHasAFloor) {
    EXPECT_EQ(movieBitRate({1920, 1080}, 0.1), 12'441'600);
    EXPECT_EQ(movieBitRate({1922, 1082}, 0.045), 5'614'930);
    EXPECT_EQ(movieBitRate({320, 180}, 0.1), 500'000);
}

}  // namespace
}  // namespace tessaloom
