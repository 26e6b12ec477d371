// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xkbcommon/xkbcommon.h>

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

    /// The key's physical position, "AD01"; empty for a key without a name.
    std::string keyName(xcb_keycode_t key) const;
    /// Shift, control, level and lock keys, whose presses are no key presses of their own.
    bool isModifier(xcb_keycode_t key) const;
    KeyModifiers modifiers() const;

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
    void readRepeatRate();
    bool isActive(const char* modifier) const;

    const X11Connection& connection_;
    std::uint8_t firstEvent_ = 0;
    std::int32_t device_ = 0;
    std::unique_ptr<xkb_context, Unreference> context_;
    std::unique_ptr<xkb_keymap, Unreference> keymap_;
    std::unique_ptr<xkb_state, Unreference> state_;
    std::chrono::milliseconds repeatDelay_{660};
    std::chrono::milliseconds repeatInterval_{40};
};

}  // namespace tessaloom
