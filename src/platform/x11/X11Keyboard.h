// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "capture/InputSources.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// The server's keyboard as one connection sees it: its map, its modifier state (raw key events carry none)
/// and its repeat rate. Kept up to date by handing it the connection's XKB events.
class X11Keyboard {
  public:
    /// Throws std::runtime_error when the server has no XKB.
    explicit X11Keyboard(const X11Connection& connection);

    /// True when the event was one of the keyboard's own.
    bool handle(const xcb_generic_event_t& event);
    /// Reads anew what the events have said was changed: once for a whole burst of them. To be called before
    /// a key is looked up.
    void refresh();

    /// The key's physical position, "AD01"; empty for a key without a name.
    std::string keyName(xcb_keycode_t key) const;
    /// Shift, control, level and lock keys, whose presses are no key presses of their own.
    bool isModifier(xcb_keycode_t key) const;
    /// The modifiers held at present, as a press of `key` has them. AltGr counts as none of them.
    KeyModifiers modifiersFor(xcb_keycode_t key) const;

    /// As the user has set it, for this key and for the whole keyboard.
    bool repeats(xcb_keycode_t key) const;
    std::chrono::milliseconds repeatDelay() const { return repeatDelay_; }
    std::chrono::milliseconds repeatInterval() const { return repeatInterval_; }

  private:
    struct Unreference {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    void selectEvents() const;
    void reloadKeymap();
    void readRepeatControls();
    bool isActive(const char* modifier) const;
    bool isShortcutModifier(xcb_keycode_t key, const char* modifier) const;

    const X11Connection& connection_;
    std::uint8_t firstEvent_ = 0;
    std::int32_t device_ = 0;
    std::unique_ptr<xkb_context, Unreference> context_;
    std::unique_ptr<xkb_keymap, Unreference> keymap_;
    std::unique_ptr<xkb_state, Unreference> state_;
    bool mapChanged_ = false;
    bool controlsChanged_ = false;
    std::array<std::uint8_t, 32> repeatingKeys_{};  ///< a bit for each key
    std::chrono::milliseconds repeatDelay_{660};
    std::chrono::milliseconds repeatInterval_{40};
};

}  // namespace tessaloom
