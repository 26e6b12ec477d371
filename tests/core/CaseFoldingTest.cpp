// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaseFolding.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

TEST(CaseFolding, LettersOfAnyScriptMeetTheirOtherCase) {
    EXPECT_EQ(caseFolded(""), "");
    EXPECT_EQ(caseFolded("dARK mODE 2"), "dark mode 2");
    EXPECT_EQ(caseFolded("GRÜN 😀"), "grün 😀");
    EXPECT_EQ(caseFolded("ТЁМНЫЙ"), caseFolded("Тёмный"));
    EXPECT_EQ(caseFolded("ΦΩΣ"), caseFolded("φως"));
}

TEST(CaseFolding, OtherDifferencesCount) {
    EXPECT_NE(caseFolded("dark"), caseFolded("dark "));
    EXPECT_NE(caseFolded("grun"), caseFolded("grün"));
    EXPECT_NE(caseFolded("["), caseFolded("{")) << "as far apart as a letter from its other case";
    EXPECT_EQ(caseFolded(std::string("A\0B", 3)), std::string("a\0b", 3));
}

TEST(CaseFolding, WhatIsNoUtf8StaysAsItIs) {
    for (const char* text : {"NAME\xFF", "NAME\xC3", "\xED\xA0\x80NAME", "\x80NAME"})
        EXPECT_EQ(caseFolded(text), text);
}

}  // namespace
}  // namespace tessaloom
