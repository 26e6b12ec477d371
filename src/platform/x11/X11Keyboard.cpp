// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Keyboard.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

// The header has a field named like a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace tessaloom {
namespace {

constexpr std::uint16_t watchedEvents = XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                        XCB_XKB_EVENT_TYPE_CONTROLS_NOTIFY;
constexpr std::uint16_t allMapParts = 0xFF;

/// The modifiers and layouts of one state put into another.
void copyState(xkb_state* from, xkb_state* to) {
    xkb_state_update_mask(to, xkb_state_serialize_mods(from, XKB_STATE_MODS_DEPRESSED),
                          xkb_state_serialize_mods(from, XKB_STATE_MODS_LATCHED),
                          xkb_state_serialize_mods(from, XKB_STATE_MODS_LOCKED),
                          xkb_state_serialize_layout(from, XKB_STATE_LAYOUT_DEPRESSED),
                          xkb_state_serialize_layout(from, XKB_STATE_LAYOUT_LATCHED),
                          xkb_state_serialize_layout(from, XKB_STATE_LAYOUT_LOCKED));
}

bool isModifierKeysym(xkb_keysym_t symbol) {
    return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) ||
           (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) ||
           symbol == XKB_KEY_Mode_switch || symbol == XKB_KEY_Num_Lock || symbol == XKB_KEY_Scroll_Lock ||
           symbol == XKB_KEY_Multi_key;
}

}  // namespace

X11Keyboard::X11Keyboard(const X11Connection& connection)
    : connection_(connection), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
    if (xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent_,
                                    nullptr) == 0) {
        throw std::runtime_error("The X server has no XKB extension; keys can't be read.");
    }
    device_ = xkb_x11_get_core_keyboard_device_id(connection);
    selectEvents();
    reloadKeymap();
    readRepeatControls();
}

void X11Keyboard::selectEvents() const {
    xcb_xkb_select_events(connection_, XCB_XKB_ID_USE_CORE_KBD, watchedEvents, 0, watchedEvents, allMapParts,
                          allMapParts, nullptr);
}

void X11Keyboard::reloadKeymap() {
    std::unique_ptr<xkb_keymap, Unreference> keymap(
        xkb_x11_keymap_new_from_device(context_.get(), connection_, device_, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return;  // the old map still serves better than none
    std::unique_ptr<xkb_state, Unreference> state(
        xkb_x11_state_new_from_device(keymap.get(), connection_, device_));
    // The server's own state may be ahead of the key events that still wait to be handled here.
    if (state && state_) copyState(state_.get(), state.get());
    state_ = std::move(state);
    keymap_ = std::move(keymap);
}

void X11Keyboard::readRepeatControls() {
    const auto cookie = xcb_xkb_get_controls(connection_, XCB_XKB_ID_USE_CORE_KBD);
    const X11Reply<xcb_xkb_get_controls_reply_t> controls(
        xcb_xkb_get_controls_reply(connection_, cookie, nullptr));
    if (!controls) return;
    const bool repeating = (controls->enabledControls & XCB_XKB_BOOL_CTRL_REPEAT_KEYS) != 0;
    repeatingKeys_.fill(0);
    if (repeating) std::copy_n(controls->perKeyRepeat, repeatingKeys_.size(), repeatingKeys_.begin());
    if (controls->repeatDelay == 0 || controls->repeatInterval == 0) return;
    repeatDelay_ = std::chrono::milliseconds(controls->repeatDelay);
    repeatInterval_ = std::chrono::milliseconds(controls->repeatInterval);
}

bool X11Keyboard::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != firstEvent_) return false;
    // All XKB events share one number and say what they are in their second byte.
    if (event.pad0 == XCB_XKB_STATE_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
        if (state_) {
            xkb_state_update_mask(state_.get(), notify.baseMods, notify.latchedMods, notify.lockedMods,
                                  static_cast<xkb_layout_index_t>(notify.baseGroup),
                                  static_cast<xkb_layout_index_t>(notify.latchedGroup), notify.lockedGroup);
        }
    } else {
        controlsChanged_ = true;
        mapChanged_ = mapChanged_ || event.pad0 != XCB_XKB_CONTROLS_NOTIFY;
    }
    return true;
}

void X11Keyboard::refresh() {
    if (std::exchange(mapChanged_, false)) reloadKeymap();
    if (std::exchange(controlsChanged_, false)) readRepeatControls();
}

std::string X11Keyboard::keyName(xcb_keycode_t key) const {
    const char* name = keymap_ ? xkb_keymap_key_get_name(keymap_.get(), key) : nullptr;
    return name == nullptr ? std::string() : std::string(name);
}

bool X11Keyboard::isModifier(xcb_keycode_t key) const {
    if (!state_) return false;
    const xkb_layout_index_t layout = xkb_state_key_get_layout(state_.get(), key);
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &symbols);
    return count > 0 && isModifierKeysym(symbols[0]);
}

bool X11Keyboard::isActive(const char* modifier) const {
    return state_ && xkb_state_mod_name_is_active(state_.get(), modifier, XKB_STATE_MODS_EFFECTIVE) > 0;
}

/// Some maps put AltGr on the modifier that Alt or Super has elsewhere: where it picks the character that the
/// key types, it is AltGr.
bool X11Keyboard::isShortcutModifier(xcb_keycode_t key, const char* modifier) const {
    if (!isActive(modifier)) return false;
    const xkb_mod_index_t index = xkb_keymap_mod_get_index(keymap_.get(), modifier);
    const bool picksCharacter = xkb_state_mod_index_is_consumed(state_.get(), key, index) > 0 &&
                                xkb_keysym_to_utf32(xkb_state_key_get_one_sym(state_.get(), key)) > U' ';
    return !picksCharacter;
}

KeyModifiers X11Keyboard::modifiersFor(xcb_keycode_t key) const {
    return {.control = isActive(XKB_MOD_NAME_CTRL),
            .alt = isShortcutModifier(key, XKB_MOD_NAME_ALT),
            .shift = isActive(XKB_MOD_NAME_SHIFT),
            .super = isShortcutModifier(key, XKB_MOD_NAME_LOGO)};
}

bool X11Keyboard::repeats(xcb_keycode_t key) const {
    return (repeatingKeys_[key / 8U] >> (key % 8U) & 1U) != 0;
}

}  // namespace tessaloom
