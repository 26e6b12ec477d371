// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/damage.h>
#include <xcb/xfixes.h>

#include <vector>

#include "media/PixelRect.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11StreamSource.h"

namespace tessaloom {

/// The server's record of what was drawn in a source since it was last asked. The connection must outlive
/// it.
class X11SourceDamage {
  public:
    /// Throws std::runtime_error when the server lacks what this takes.
    X11SourceDamage(const X11Connection& connection, xcb_window_t window);
    ~X11SourceDamage();
    X11SourceDamage(const X11SourceDamage&) = delete;
    X11SourceDamage& operator=(const X11SourceDamage&) = delete;

    /// Whether the event tells of damage, to this window or another one.
    bool isDamageEvent(const xcb_generic_event_t& event) const;

    /// What was drawn, with what the source knows of besides, in its picture's coordinates. Emptied by the
    /// call; the server then tells of the next change.
    std::vector<PixelRect> take(X11StreamSource& source) const;

  private:
    const X11Connection& connection_;
    std::uint8_t firstEvent_;
    xcb_damage_damage_t damage_;
    xcb_xfixes_region_t region_;
};

}  // namespace tessaloom
