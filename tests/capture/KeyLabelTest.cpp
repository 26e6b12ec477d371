// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/KeyLabel.h"

#include <gtest/gtest.h>

namespace tessaloom {
namespace {

constexpr KeyModifiers none{};
constexpr KeyModifiers shift{.shift = true};

TEST(KeyLabel, PlainAndShiftedTypingLeavesNone) {
    for (const char* key : {"AD01", "AC01", "AB10", "AE01", "AE12", "TLDE", "BKSL", "AC10", "LSGT"}) {
        EXPECT_EQ(keyLabel(key, none), "") << key;
        EXPECT_EQ(keyLabel(key, shift), "") << key;
    }
}

TEST(KeyLabel, ShortcutsShowTheirModifiersInOneOrder) {
    EXPECT_EQ(keyLabel("AE04", {.shift = true, .super = true}), "⇧⌘4");
    EXPECT_EQ(keyLabel("AC02", {.control = true}), "⌃S");
    EXPECT_EQ(keyLabel("AD01", {.control = true, .alt = true, .shift = true, .super = true}), "⌃⌥⇧⌘Q");
}

TEST(KeyLabel, KeysThatTypeNothingShowOnTheirOwn) {
    EXPECT_EQ(keyLabel("RTRN", none), "↩");
    EXPECT_EQ(keyLabel("KPEN", none), "↩");
    EXPECT_EQ(keyLabel("ESC", none), "⎋");
    EXPECT_EQ(keyLabel("FK12", none), "F12");
    EXPECT_EQ(keyLabel("LEFT", {.shift = true}), "⇧←");
    EXPECT_EQ(keyLabel("SPCE", none), "␣");
}

TEST(KeyLabel, AKeyWithoutTextShowsItsModifiersAlone) {
    EXPECT_EQ(keyLabel("LSGT", {.control = true}), "⌃");
    EXPECT_EQ(keyLabel("I170", {.super = true}), "⌘");
    EXPECT_EQ(keyLabel("I170", none), "");
}

TEST(KeyLabel, TheExtraKeyOfEuropeanKeyboardsIsTheAnsiBackslash) {
    EXPECT_EQ(keyLabel("AC12", {.control = true}), "⌃\\");
    EXPECT_EQ(keyLabel("BKSL", {.control = true}), "⌃\\");
}

}  // namespace
}  // namespace tessaloom
