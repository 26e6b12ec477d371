// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Keyboard.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <stdexcept>

// The header has a field named like a C++ keyword.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

namespace tessaloom {
namespace {

constexpr std::uint16_t watchedEvents =
    XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
constexpr std::uint16_t allMapParts = 0xFF;

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
    readRepeatRate();
}

void X11Keyboard::selectEvents() const {
    xcb_xkb_select_events(connection_, XCB_XKB_ID_USE_CORE_KBD, watchedEvents, 0, watchedEvents, allMapParts,
                          allMapParts, nullptr);
}

void X11Keyboard::reloadKeymap() {
    std::unique_ptr<xkb_keymap, Unreference> keymap(
        xkb_x11_keymap_new_from_device(context_.get(), connection_, device_, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return;  // the old map still serves better than none
    state_.reset(xkb_x11_state_new_from_device(keymap.get(), connection_, device_));
    keymap_ = std::move(keymap);
}

void X11Keyboard::readRepeatRate() {
    const auto cookie = xcb_xkb_get_controls(connection_, XCB_XKB_ID_USE_CORE_KBD);
    const X11Reply<xcb_xkb_get_controls_reply_t> controls(
        xcb_xkb_get_controls_reply(connection_, cookie, nullptr));
    if (!controls || controls->repeatDelay == 0 || controls->repeatInterval == 0) return;
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
        reloadKeymap();
        readRepeatRate();
    }
    return true;
}

std::string X11Keyboard::keyName(xcb_keycode_t key) const {
    const char* name = keymap_ ? xkb_keymap_key_get_name(keymap_.get(), key) : nullptr;
    return name == nullptr ? std::string() : std::string(name);
}

bool X11Keyboard::isModifier(xcb_keycode_t key) const {
    if (!keymap_) return false;
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, 0, 0, &symbols);
    return count > 0 && isModifierKeysym(symbols[0]);
}

bool X11Keyboard::isActive(const char* modifier) const {
    return state_ && xkb_state_mod_name_is_active(state_.get(), modifier, XKB_STATE_MODS_EFFECTIVE) > 0;
}

KeyModifiers X11Keyboard::modifiers() const {
    return {.control = isActive(XKB_MOD_NAME_CTRL),
            .alt = isActive(XKB_MOD_NAME_ALT),
            .shift = isActive(XKB_MOD_NAME_SHIFT),
            .super = isActive(XKB_MOD_NAME_LOGO)};
}

bool X11Keyboard::repeats(xcb_keycode_t key) const {
    return keymap_ && xkb_keymap_key_repeats(keymap_.get(), key) != 0;
}

}  // namespace tessaloom
