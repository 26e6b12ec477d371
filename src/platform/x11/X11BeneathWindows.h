// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xcb.h>

#include <map>
#include <optional>
#include <vector>

#include "media/PixelRect.h"
#include "platform/x11/LeftArea.h"
#include "platform/x11/X11BareDesktop.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// Draws what the screen would show if this program's own windows were not there: the bare
/// desktop, and the pixels that the server keeps of every other window. Our desktop cover counts as the
/// others do. All rectangles are in root coordinates.
class X11BeneathWindows {
  public:
    /// Whether the server has all that this takes.
    static bool isPossible(const X11Connection& connection);

    /// Only where it is possible. `leftAreas` are where windows of ours were before.
    X11BeneathWindows(const X11Connection& connection, const std::vector<LeftArea>& leftAreas);
    ~X11BeneathWindows();
    X11BeneathWindows(const X11BeneathWindows&) = delete;
    X11BeneathWindows& operator=(const X11BeneathWindows&) = delete;

    /// Looks at the windows anew, as after any of them came, went, moved or changed its place in the stack.
    /// True when where our own are has changed.
    bool refresh();

    /// The window is gone, and its number free for another.
    void forget(xcb_window_t window);

    /// Whether the last look has grown too old by itself.
    bool isOutdated() const;

    /// Where our own windows are, or are still shown.
    const std::vector<PixelRect>& ownAreas() const { return ownAreas_; }

    /// Whether the window is one of those that draw() shows; if it is, what of our areas its having
    /// changed may have changed. The server then tells of its next change.
    std::vector<PixelRect> takeDamage(xcb_window_t window);

    /// Draws a part of the screen into `target`, a pixmap of the screen's depth whose top left corner lies at
    /// `originX`, `originY`.
    void draw(const PixelRect& part, xcb_pixmap_t target, int originX, int originY) const;

  private:
    struct Window {
        PixelRect frame;  ///< with its border
        int border = 0;
        std::uint8_t depth = 0;
        xcb_pixmap_t pixmap = XCB_NONE;
        xcb_damage_damage_t damage = XCB_NONE;
    };

    void readFormats();
    std::vector<PixelRect> leftAndPresent(const std::vector<PixelRect>& present);
    bool isOurOwn(xcb_window_t window);
    void show(xcb_window_t id, const PixelRect& frame, int border, std::uint8_t depth);
    void release(xcb_window_t id, const Window& window) const;
    void drawWindow(xcb_window_t id, const Window& window, const PixelRect& part, xcb_render_picture_t target,
                    int originX, int originY) const;

    const X11Connection& connection_;
    xcb_render_pictformat_t opaqueFormat_ = 0;
    xcb_render_pictformat_t alphaFormat_ = 0;
    bool composited_ = false;  ///< whether a compositing manager makes use of windows' alpha
    std::optional<X11BareDesktop> desktop_;
    std::map<xcb_window_t, bool> isOwn_;
    std::vector<PixelRect> presentAreas_;  ///< where our own windows are
    std::vector<LeftArea> leftAreas_;      ///< where they were, and may still show
    std::vector<PixelRect> ownAreas_;      ///< both
    std::vector<xcb_window_t> stack_;      ///< those shown, from the bottom up
    std::map<xcb_window_t, Window> windows_;
};

}  // namespace tessaloom
