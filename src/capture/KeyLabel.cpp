// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/KeyLabel.h"

#include <algorithm>
#include <array>
#include <span>

namespace tessaloom {
namespace {

struct KeyText {
    std::string_view name;  ///< XKB key name
    std::string_view text;
};

/// Keys that show on their own, with or without modifiers.
constexpr std::array specialKeys = {
    KeyText{"RTRN", "↩"},   KeyText{"KPEN", "↩"},   KeyText{"TAB", "⇥"},    KeyText{"SPCE", "␣"},
    KeyText{"BKSP", "⌫"},   KeyText{"ESC", "⎋"},    KeyText{"DELE", "⌦"},   KeyText{"HOME", "↖"},
    KeyText{"END", "↘"},    KeyText{"PGUP", "⇞"},   KeyText{"PGDN", "⇟"},   KeyText{"LEFT", "←"},
    KeyText{"RGHT", "→"},   KeyText{"DOWN", "↓"},   KeyText{"UP", "↑"},     KeyText{"FK01", "F1"},
    KeyText{"FK02", "F2"},  KeyText{"FK03", "F3"},  KeyText{"FK04", "F4"},  KeyText{"FK05", "F5"},
    KeyText{"FK06", "F6"},  KeyText{"FK07", "F7"},  KeyText{"FK08", "F8"},  KeyText{"FK09", "F9"},
    KeyText{"FK10", "F10"}, KeyText{"FK11", "F11"}, KeyText{"FK12", "F12"},
};

/// Keys that type a character: they show only as part of a shortcut. Labels are those of the ANSI keyboard.
constexpr std::array plainKeys = {
    KeyText{"TLDE", "`"},  KeyText{"AE01", "1"},  KeyText{"AE02", "2"}, KeyText{"AE03", "3"},
    KeyText{"AE04", "4"},  KeyText{"AE05", "5"},  KeyText{"AE06", "6"}, KeyText{"AE07", "7"},
    KeyText{"AE08", "8"},  KeyText{"AE09", "9"},  KeyText{"AE10", "0"}, KeyText{"AE11", "-"},
    KeyText{"AE12", "="},  KeyText{"AD01", "Q"},  KeyText{"AD02", "W"}, KeyText{"AD03", "E"},
    KeyText{"AD04", "R"},  KeyText{"AD05", "T"},  KeyText{"AD06", "Y"}, KeyText{"AD07", "U"},
    KeyText{"AD08", "I"},  KeyText{"AD09", "O"},  KeyText{"AD10", "P"}, KeyText{"AD11", "["},
    KeyText{"AD12", "]"},  KeyText{"AC01", "A"},  KeyText{"AC02", "S"}, KeyText{"AC03", "D"},
    KeyText{"AC04", "F"},  KeyText{"AC05", "G"},  KeyText{"AC06", "H"}, KeyText{"AC07", "J"},
    KeyText{"AC08", "K"},  KeyText{"AC09", "L"},  KeyText{"AC10", ";"}, KeyText{"AC11", "'"},
    KeyText{"BKSL", "\\"}, KeyText{"AC12", "\\"}, KeyText{"AB01", "Z"}, KeyText{"AB02", "X"},
    KeyText{"AB03", "C"},  KeyText{"AB04", "V"},  KeyText{"AB05", "B"}, KeyText{"AB06", "N"},
    KeyText{"AB07", "M"},  KeyText{"AB08", ","},  KeyText{"AB09", "."}, KeyText{"AB10", "/"},
};

std::string_view textOf(std::string_view name, std::span<const KeyText> keys) {
    const auto found = std::ranges::find(keys, name, &KeyText::name);
    return found == keys.end() ? std::string_view() : found->text;
}

std::string modifierText(const KeyModifiers& modifiers) {
    std::string text;
    if (modifiers.control) text += "⌃";
    if (modifiers.alt) text += "⌥";
    if (modifiers.shift) text += "⇧";
    if (modifiers.super) text += "⌘";
    return text;
}

}  // namespace

std::string keyLabel(std::string_view keyName, const KeyModifiers& modifiers) {
    const std::string_view special = textOf(keyName, specialKeys);
    const bool isShortcut = modifiers.control || modifiers.alt || modifiers.super;
    if (special.empty() && !isShortcut) return {};
    std::string label = modifierText(modifiers);
    label += special.empty() ? textOf(keyName, plainKeys) : special;
    return label;
}

}  // namespace tessaloom
