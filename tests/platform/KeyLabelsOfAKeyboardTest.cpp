// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cctype>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "capture/KeyLabel.h"

namespace tessaloom {
namespace {

struct XkbDelete {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

/// The American keyboard as the system defines it, which our labels are those of.
class AnsiKeyboard : public ::testing::Test {
  protected:
    /// What a key gives without modifiers.
    xkb_keysym_t symbolOf(const char* key) const {
        const xkb_keysym_t* symbols = nullptr;
        const xkb_keycode_t code = xkb_keymap_key_by_name(keymap_.get(), key);
        const bool hasOne = xkb_keymap_key_get_syms_by_level(keymap_.get(), code, 0, 0, &symbols) == 1;
        return hasOne ? symbols[0] : XKB_KEY_NoSymbol;
    }

    const char* nameOf(xkb_keycode_t code) const { return xkb_keymap_key_get_name(keymap_.get(), code); }
    xkb_keycode_t firstKey() const { return xkb_keymap_min_keycode(keymap_.get()); }
    xkb_keycode_t lastKey() const { return xkb_keymap_max_keycode(keymap_.get()); }

  private:
    static constexpr xkb_rule_names american{"evdev", "pc105", "us", "", ""};
    std::unique_ptr<xkb_context, XkbDelete> context_{xkb_context_new(XKB_CONTEXT_NO_FLAGS)};
    std::unique_ptr<xkb_keymap, XkbDelete> keymap_{
        xkb_keymap_new_from_names(context_.get(), &american, XKB_KEYMAP_COMPILE_NO_FLAGS)};
};

/// Keys of multimedia keyboards, which repeat others, and the one that pc105 has more than ANSI.
bool isExtra(std::string_view name) {
    return name.starts_with('I') || name == "LSGT";
}

constexpr std::size_t charactersTyped = 47;

TEST_F(AnsiKeyboard, EachKeyThatTypesIsLabelledByWhatItTypes) {
    std::size_t typed = 0;
    for (xkb_keycode_t code = firstKey(); code <= lastKey(); ++code) {
        const char* name = nameOf(code);
        const xkb_keysym_t symbol = name != nullptr ? symbolOf(name) : XKB_KEY_NoSymbol;
        if (symbol <= XKB_KEY_space || symbol > XKB_KEY_asciitilde || isExtra(name)) continue;
        const auto character = static_cast<char>(std::toupper(static_cast<int>(symbol)));
        EXPECT_EQ(keyLabel(name, {.control = true}), std::string("⌃") + character) << name;
        EXPECT_EQ(keyLabel(name, {.shift = true}), "") << name;
        ++typed;
    }
    EXPECT_EQ(typed, charactersTyped);
}

TEST_F(AnsiKeyboard, KeysThatTypeNothingAreLabelledByTheirSigns) {
    constexpr std::array<std::pair<xkb_keysym_t, const char*>, 27> signs{
        {{XKB_KEY_Return, "↩"},    {XKB_KEY_KP_Enter, "↩"}, {XKB_KEY_Tab, "⇥"},    {XKB_KEY_space, "␣"},
         {XKB_KEY_BackSpace, "⌫"}, {XKB_KEY_Escape, "⎋"},   {XKB_KEY_Delete, "⌦"}, {XKB_KEY_Home, "↖"},
         {XKB_KEY_End, "↘"},       {XKB_KEY_Prior, "⇞"},    {XKB_KEY_Next, "⇟"},   {XKB_KEY_Left, "←"},
         {XKB_KEY_Right, "→"},     {XKB_KEY_Down, "↓"},     {XKB_KEY_Up, "↑"},     {XKB_KEY_F1, "F1"},
         {XKB_KEY_F2, "F2"},       {XKB_KEY_F3, "F3"},      {XKB_KEY_F4, "F4"},    {XKB_KEY_F5, "F5"},
         {XKB_KEY_F6, "F6"},       {XKB_KEY_F7, "F7"},      {XKB_KEY_F8, "F8"},    {XKB_KEY_F9, "F9"},
         {XKB_KEY_F10, "F10"},     {XKB_KEY_F11, "F11"},    {XKB_KEY_F12, "F12"}}};
    std::size_t found = 0;
    for (xkb_keycode_t code = firstKey(); code <= lastKey(); ++code) {
        const char* name = nameOf(code);
        if (name == nullptr || isExtra(name)) continue;
        for (const auto& [symbol, sign] : signs) {
            if (symbolOf(name) != symbol) continue;
            EXPECT_EQ(keyLabel(name, {}), sign) << name;
            EXPECT_EQ(keyLabel(name, {.shift = true}), std::string("⇧") + sign) << name;
            ++found;
        }
    }
    EXPECT_EQ(found, signs.size());
}

}  // namespace
}  // namespace tessaloom
