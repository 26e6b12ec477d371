// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "capture/ShareableContent.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// The server's monitors and mapped top-level windows at this moment. Throws CaptureError::noDisplay when the
/// connection was lost over it.
ShareableContent readShareableContent(const X11Connection& connection);

/// The window's place on the screen in points, without the window manager's decoration; nothing when it is
/// gone.
std::optional<Rect> windowFrame(const X11Connection& connection, xcb_window_t window, double scale);

/// Pixels per point: the desktop's text resolution (Xft.dpi) over 96, 1 when it isn't set.
double pointPixelScale(const X11Connection& connection);

}  // namespace tessaloom
