// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Caption.h"

#include <gtest/gtest.h>

#include "core/CaptionPreset.h"

namespace tessaloom {
namespace {

Caption spokenLine() {
    return {1, 4, "One, two THREE", {{"one", 1, 1.5}, {"two", 2, 2.5}, {"three", 3, 3.5}}};
}

TEST(Caption, MarksTheSpokenWordAndRestsOnItDuringAPause) {
    const Caption line = spokenLine();
    EXPECT_EQ(line.activeWord(0.9), std::nullopt);
    EXPECT_EQ(line.activeWord(0.9999995), 0);
    EXPECT_EQ(line.activeWord(1.25), 0);
    EXPECT_EQ(line.activeWord(1.75), 0);
    EXPECT_EQ(line.activeWord(2), 1);
    EXPECT_EQ(line.activeWord(3.9), 2);
}

TEST(Caption, WhereWordsTouchTheEarlierOneIsMarked) {
    EXPECT_EQ((Caption{0, 2, "a b", {{"a", 0, 1}, {"b", 1, 2}}}.activeWord(1)), 0);
}

TEST(Caption, WithoutWordsNothingIsMarked) {
    EXPECT_EQ((Caption{0, 2, "typed by hand", {}}.activeWord(1)), std::nullopt);
}

TEST(Caption, PiecesOfTheTextIgnoreRepeatedBlanks) {
    const Caption line{0, 1, "  first  second ", {}};
    EXPECT_EQ(line.word(0), "first");
    EXPECT_EQ(line.word(1), "second");
    EXPECT_EQ(line.word(2), std::nullopt);
    EXPECT_EQ(line.word(-1), std::nullopt);
    EXPECT_EQ(Caption{}.word(0), std::nullopt);
}

TEST(Caption, RemovingTakesOutTheWordsOfACut) {
    const std::vector<TimeSegment> cut{{1.9, 2.1}};
    EXPECT_EQ(spokenLine().removing(cut),
              (Caption{1, 3.5, "one three", {{"one", 1, 1.5}, {"three", 3, 3.5}}}));
}

TEST(Caption, RemovingNothingKeepsTheTextAsItWasTyped) {
    const std::vector<TimeSegment> between{{1.5, 2}};
    EXPECT_EQ(spokenLine().removing(between), spokenLine()) << "a cut that only touches words";
    EXPECT_EQ(spokenLine().removing({}), spokenLine());
    const Caption wordless{1, 2, "hand", {}};
    EXPECT_EQ(wordless.removing(std::vector<TimeSegment>{{0, 9}}), wordless);
}

TEST(Caption, RemovingEveryWordLeavesTheEmptyLine) {
    EXPECT_EQ(spokenLine().removing(std::vector<TimeSegment>{{0, 9}}), Caption{});
}

TEST(Caption, AReversedCutIsAPointAtItsStart) {
    const std::vector<TimeSegment> reversed{{2.25, 1}};
    EXPECT_EQ(spokenLine().removing(reversed).words.size(), 2U);
}

TEST(CaptionPreset, KeepsSizeAndPlaceAndSetsTheRest) {
    const CaptionStyle base{2,         "#ABCDEF",          "#ABCDEF", 0.1, 0.5, CaptionHighlight::none,
                            "#ABCDEF", CaptionPlate::none, true};
    const auto style = [](double opacity, CaptionHighlight highlight, const char* color, CaptionPlate plate,
                          bool uppercase) {
        return CaptionStyle{2, "#FFFFFF", "#000000", opacity, 0.5, highlight, color, plate, uppercase};
    };
    EXPECT_EQ(captionStyle(CaptionPreset::classic, base),
              style(0.78, CaptionHighlight::none, "#FFD60A", CaptionPlate::bar, false));
    EXPECT_EQ(captionStyle(CaptionPreset::karaoke, base),
              style(0.85, CaptionHighlight::box, "#FFD60A", CaptionPlate::bar, false));
    EXPECT_EQ(captionStyle(CaptionPreset::minimal, base),
              style(0.78, CaptionHighlight::underline, "#FFD60A", CaptionPlate::none, false));
    EXPECT_EQ(captionStyle(CaptionPreset::bold, base),
              style(0.78, CaptionHighlight::box, "#5FC4E6", CaptionPlate::none, true));
}

}  // namespace
}  // namespace tessaloom
