// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/TextRasters.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "render/LogLines.h"
#include "support/AllocationCounter.h"

namespace tessaloom {
namespace {

/// Counts what had to be rastered; keeps of a raster the number it came as.
class TextRastersTest : public ::testing::Test {
  protected:
    int made_ = 0;
    TextRasters<int> rasters_{[this](BgraImage) { return std::optional(++made_); }};
};

TEST(TextRasterKeysTest, TellApartAllThatChangesTheRaster) {
    TextRasterKeys keys;
    using namespace std::string_literals;
    EXPECT_EQ(keys.captionLine("Größe", "#FFFFFF", false),
              "#FFFFFF\x01"
              "false\x01"
              "Größe"s);
    EXPECT_EQ(keys.captionLine("Größe", "#FFFFFF", true),
              "#FFFFFF\x01"
              "true\x01"
              "GRÖSSE"s);
    EXPECT_EQ(keys.wordChip("no", "red", false),
              "wc\x01"
              "red\x01"
              "false\x01"
              "no"s);
    EXPECT_EQ(keys.wordChip("no", "red", true),
              "wc\x01"
              "red\x01"
              "true\x01"
              "NO"s);
}

TEST_F(TextRastersTest, MakesEachRasterOnce) {
    EXPECT_EQ(rasters_.keystroke("A")->picture, 1);
    EXPECT_EQ(rasters_.captionLine("A", "#FFFFFF", false)->picture, 2);
    EXPECT_EQ(rasters_.wordChip("A", "#FFFFFF", false)->picture, 3);
    EXPECT_EQ(rasters_.keystroke("A")->picture, 1);
    EXPECT_EQ(rasters_.captionLine("A", "#FFFFFF", false)->picture, 2);
    EXPECT_EQ(rasters_.wordChip("A", "#FFFFFF", false)->picture, 3);
}

TEST_F(TextRastersTest, MakesAnotherForOtherColorsAndCapitals) {
    rasters_.captionLine("a", "#FFFFFF", false);
    EXPECT_EQ(rasters_.captionLine("a", "#FFFFFF", true)->picture, 2);
    EXPECT_EQ(rasters_.captionLine("a", "#FF0000", false)->picture, 3);
    EXPECT_EQ(rasters_.captionLine("A", "#FFFFFF", true)->picture, 2) << "shown alike";
}

TEST_F(TextRastersTest, ForgetsTheOldestLinesBeyond256) {
    const auto line = [](int number) { return std::to_string(number); };
    for (int i = 0; i < 300; ++i)
        rasters_.captionLine(line(i), "#FFFFFF", false);
    EXPECT_EQ(made_, 300);
    rasters_.captionLine(line(44), "#FFFFFF", false);
    EXPECT_EQ(made_, 300);
    rasters_.captionLine(line(43), "#FFFFFF", false);
    EXPECT_EQ(made_, 301);
    rasters_.captionLine(line(44), "#FFFFFF", false);
    EXPECT_EQ(made_, 302) << "evicted by 43, although it was used since";
}

TEST_F(TextRastersTest, PrewarmsLinesAndBoxedWords) {
    const std::array<std::string_view, 2> lines{"one two", "two  three"};
    CaptionStyle style{.highlight = CaptionHighlight::box, .uppercase = true};
    rasters_.prewarmCaptions(lines, style);
    EXPECT_EQ(made_, 5) << "two lines, three distinct words";
    rasters_.captionLine(lines[1], style.color, true);
    rasters_.wordChip("THREE", style.highlightColor, true);
    EXPECT_EQ(made_, 5);
}

TEST_F(TextRastersTest, PrewarmsNoWordsThatAreNotBoxed) {
    const std::array<std::string_view, 1> lines{"one two"};
    rasters_.prewarmCaptions(lines, {.highlight = CaptionHighlight::underline});
    EXPECT_EQ(made_, 1);
}

TEST_F(TextRastersTest, FindsWhatItHasWithoutAllocating) {
    const std::string text = "a line that is long enough to need memory of its own";
    for (int round = 0; round < 2; ++round) {
        const test::AllocationCounter counter;
        rasters_.keystroke(text);
        rasters_.captionLine(text, "#FFFFFF", true);
        rasters_.wordChip(text, "#FFFFFF", true);
        if (round == 1) {
            EXPECT_EQ(counter.count(), 0U);
        }
    }
}

TEST(TextRastersFailureTest, SaysSoAndTriesAgainWhenARasterCannotBeKept) {
    const test::LogLines log;
    int attempts = 0;
    TextRasters<int> rasters([&](BgraImage) { return ++attempts, std::optional<int>(); });
    EXPECT_EQ(rasters.captionLine("", "#FFFFFF", false), nullptr);
    EXPECT_EQ(rasters.captionLine("", "#FFFFFF", false), nullptr);
    EXPECT_EQ(rasters.keystroke(""), nullptr);
    EXPECT_EQ(attempts, 3);
    ASSERT_EQ(test::LogLines::lines.size(), 3);
    EXPECT_EQ(test::LogLines::lines.front(), "Raster failed: could not allocate a 352x420 texture");
}

}  // namespace
}  // namespace tessaloom
