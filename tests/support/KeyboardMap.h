// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <optional>
#include <string>

namespace tessaloom::test {

/// A key and whether Shift is held for it.
struct KeyStroke {
    xcb_keycode_t keycode = 0;
    bool shift = false;
};

/// The server's keyboard layout as it was when this was read: which key to press for what.
class KeyboardMap {
  public:
    /// Throws std::runtime_error when the server has no keyboard description.
    static KeyboardMap read(xcb_connection_t* connection);

    /// The stroke that types `character` on the first layout; nothing when that needs more than Shift.
    std::optional<KeyStroke> forCharacter(char32_t character) const;

    /// By the symbol's name, as "Return", "Escape" or "Control_L".
    std::optional<KeyStroke> forSymbolName(const std::string& name) const;

    /// By position, as "AC01" for the key right of Caps Lock.
    std::optional<xcb_keycode_t> forPosition(const std::string& name) const;

  private:
    struct Release {
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    };

    explicit KeyboardMap(xkb_keymap* keymap) : keymap_(keymap) {}
    std::optional<KeyStroke> forSymbol(xkb_keysym_t symbol) const;

    std::unique_ptr<xkb_keymap, Release> keymap_;
};

}  // namespace tessaloom::test
