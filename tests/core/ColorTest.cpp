// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Color.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr Color charcoal{0.11F, 0.11F, 0.12F, 1.0F};

TEST(Color, ReadsSixHexadecimalDigits) {
    const Color expected{1.0F, 128.0F / 255.0F, 0.0F, 1.0F};
    for (const char* text : {"#FF8000", "ff8000", "  #fF8000\n"})
        EXPECT_EQ(colorFromHex(text), expected) << text;
}

TEST(Color, AnythingElseIsCharcoal) {
    for (const char* text : {"", "#", "#FFF", "#FF80000", "##F8000", "#GG0000", "+FF800", "-FF800", "0xFF80",
                             "#FF 800", "rouge!", "é8000"})
        EXPECT_EQ(colorFromHex(text), charcoal) << text;
}

}  // namespace
}  // namespace tessaloom
