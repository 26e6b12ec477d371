// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Color.h"

#include <gtest/gtest.h>

#include <string>

namespace tessaloom {
namespace {

constexpr Color charcoal{0.11F, 0.11F, 0.12F, 1.0F};

TEST(Color, ReadsSixHexadecimalDigits) {
    const Color expected{1.0F, 128.0F / 255.0F, 0.0F, 1.0F};
    for (const char* text : {"#FF8000", "ff8000", "  #fF8000\n"})
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

TEST(Color, WhiteSpaceOfAnyScriptAroundItIsIgnored) {
    const Color expected{1.0F, 128.0F / 255.0F, 0.0F, 1.0F};
    for (const std::string space :
         {" ",      "\t",     "\n",     "\v",     "\f",     "\r",     "\u0085", "\u00A0",         "\u1680",
          "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007",         "\u2008",
          "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000", "\u3000 \u00A0\n"}) {
        for (const std::string& text : {space + "#FF8000", "#FF8000" + space, space + "FF8000" + space})
            EXPECT_EQ(colorFromHex(text), expected) << text;
        EXPECT_EQ(colorFromHex("#" + space + "FF8000"), charcoal) << "inside it counts";
        EXPECT_EQ(colorFromHex(space), charcoal);
    }
    for (const char* text : {"\u200BFF8000", "FF8000\uFEFF",
                             "\xA0"
                             "FF8000",
                             "FF8000\x80"})
        EXPECT_EQ(colorFromHex(text), charcoal) << "no white space: " << text;
}

TEST(Color, AnythingElseIsCharcoal) {
    for (const char* text : {"", "#", "#FFF", "#FF80000", "##F8000", "#GG0000", "+FF800", "-FF800", "0xFF80",
                             "#FF 800", "rouge!", "é8000"})
        EXPECT_EQ(colorFromHex(text), charcoal) << text;
}

}  // namespace
}  // namespace tessaloom
