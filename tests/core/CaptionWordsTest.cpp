// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaptionWords.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

using Words = std::vector<std::string_view>;

TEST(CaptionWordsTest, AreThePiecesBetweenBlanks) {
    EXPECT_EQ(captionWords("one two"), (Words{"one", "two"}));
    EXPECT_EQ(captionWords("  one   two "), (Words{"one", "two"}));
    EXPECT_EQ(captionWords("tab\tand\nline"), (Words{"tab\tand\nline"}));
    EXPECT_EQ(captionWords(""), Words());
    EXPECT_EQ(captionWords("   "), Words());
}

TEST(CaptionWordsTest, AreFoundByTheirIndex) {
    EXPECT_EQ(captionWord("  one   two ", 0), "one");
    EXPECT_EQ(captionWord("  one   two ", 1), "two");
    EXPECT_EQ(captionWord("  one   two ", 2), std::nullopt);
    EXPECT_EQ(captionWord("one", -1), std::nullopt);
    EXPECT_EQ(captionWord("", 0), std::nullopt);
}

}  // namespace
}  // namespace tessaloom
