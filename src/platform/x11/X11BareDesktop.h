// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/xcb.h>

#include <vector>

#include "media/PixelRect.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// Draws what the screen shows where no window is. Without a compositing manager that is the root window's
/// background, plain or tiled, which the server itself paints, off the screen. A compositing manager paints
/// the wallpaper's pixmap instead, or, where there is none, something of its own: then the nearest pixel of
/// it stands for the rest. Needs the server's COMPOSITE. All rectangles are in root coordinates.
class X11BareDesktop {
  public:
    X11BareDesktop(const X11Connection& connection, bool composited);
    ~X11BareDesktop();
    X11BareDesktop(const X11BareDesktop&) = delete;
    X11BareDesktop& operator=(const X11BareDesktop&) = delete;

    /// Where windows are, on a root window of this size, from now on.
    void setWindows(const PixelRect& root, std::vector<PixelRect> windows);

    /// Draws a part of it into `target`, a pixmap of the screen's depth whose top left corner lies at
    /// `originX`, `originY`.
    void draw(const PixelRect& part, xcb_pixmap_t target, int originX, int originY) const;

  private:
    void makePainter();
    void drawBackground(const PixelRect& part, xcb_pixmap_t target, int originX, int originY) const;
    void drawTiled(xcb_pixmap_t tile, const PixelRect& part, xcb_pixmap_t target, int originX,
                   int originY) const;
    void drawSpot(const PixelRect& spot, const PixelRect& part, xcb_pixmap_t target, int originX,
                  int originY) const;

    const X11Connection& connection_;
    bool composited_;
    PixelRect root_;
    std::vector<PixelRect> windows_;
    xcb_window_t holder_ = XCB_NONE;   ///< lies off the screen
    xcb_window_t painter_ = XCB_NONE;  ///< in it; shares the root's background, and shows nowhere
    xcb_gcontext_t copying_ = XCB_NONE;
};

}  // namespace tessaloom
