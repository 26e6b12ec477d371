// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/KeyboardMap.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <stdexcept>

namespace tessaloom::test {

KeyboardMap KeyboardMap::read(xcb_connection_t* connection) {
    xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr);
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const int device = xkb_x11_get_core_keyboard_device_id(connection);
    xkb_keymap* keymap =
        device < 0 ? nullptr
                   : xkb_x11_keymap_new_from_device(context, connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_context_unref(context);  // The keymap holds it from here on.
    if (keymap == nullptr) throw std::runtime_error("The X server describes no keyboard");
    return KeyboardMap(keymap);
}

std::optional<KeyStroke> KeyboardMap::forCharacter(char32_t character) const {
    return forSymbol(xkb_utf32_to_keysym(character));
}

std::optional<KeyStroke> KeyboardMap::forSymbolName(const std::string& name) const {
    return forSymbol(xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_NO_FLAGS));
}

std::optional<xcb_keycode_t> KeyboardMap::forPosition(const std::string& name) const {
    const xkb_keycode_t keycode = xkb_keymap_key_by_name(keymap_.get(), name.c_str());
    if (keycode == XKB_KEYCODE_INVALID) return std::nullopt;
    return static_cast<xcb_keycode_t>(keycode);
}

std::optional<KeyStroke> KeyboardMap::forSymbol(xkb_keysym_t symbol) const {
    if (symbol == XKB_KEY_NoSymbol) return std::nullopt;
    constexpr xkb_level_index_t levelsWithShift = 2;
    for (xkb_level_index_t level = 0; level < levelsWithShift; ++level) {
        const xkb_keycode_t last = xkb_keymap_max_keycode(keymap_.get());
        for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap_.get()); key <= last; ++key) {
            const xkb_keysym_t* symbols = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, 0, level, &symbols);
            if (count == 1 && symbols[0] == symbol) {
                return KeyStroke{static_cast<xcb_keycode_t>(key), level == 1};
            }
        }
    }
    return std::nullopt;
}

}  // namespace tessaloom::test
