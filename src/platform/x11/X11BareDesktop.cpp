// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11BareDesktop.h"

#include <xcb/composite.h>

#include <array>
#include <optional>
#include <utility>

#include "platform/x11/BareSpot.h"
#include "platform/x11/X11Wallpaper.h"

namespace tessaloom {
namespace {

constexpr std::int16_t holderPlace = -10'000;  ///< in both directions, off every screen

}  // namespace

X11BareDesktop::X11BareDesktop(const X11Connection& connection, bool composited)
    : connection_(connection), composited_(composited), copying_(xcb_generate_id(connection)) {
    const std::array<std::uint32_t, 2> values{XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    xcb_create_gc(connection, copying_, connection.root(), XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES,
                  values.data());
    if (!composited_) makePainter();
}

X11BareDesktop::~X11BareDesktop() {
    xcb_free_gc(connection_, copying_);
    if (holder_ != XCB_NONE) xcb_destroy_window(connection_, holder_);
    connection_.flush();
}

/// Being a window's child keeps it from window and compositing managers, and being redirected by us alone
/// keeps it off the screen, with pixels all the same.
void X11BareDesktop::makePainter() {
    const std::array<std::uint32_t, 2> values{XCB_BACK_PIXMAP_PARENT_RELATIVE, 1};
    const auto create = [&](xcb_window_t parent, std::int16_t place) {
        const xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, parent, place, place, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT, values.data());
        return window;
    };
    holder_ = create(connection_.root(), holderPlace);
    painter_ = create(holder_, 0);
    xcb_composite_redirect_window(connection_, painter_, XCB_COMPOSITE_REDIRECT_MANUAL);
    xcb_map_window(connection_, painter_);
    xcb_map_window(connection_, holder_);
}

void X11BareDesktop::setWindows(const PixelRect& root, std::vector<PixelRect> windows) {
    root_ = root;
    windows_ = std::move(windows);
}

void X11BareDesktop::draw(const PixelRect& part, xcb_pixmap_t target, int originX, int originY) const {
    if (!composited_) {
        drawBackground(part, target, originX, originY);
    } else if (const xcb_pixmap_t wallpaper = wallpaperPixmap(connection_); wallpaper != XCB_NONE) {
        drawTiled(wallpaper, part, target, originX, originY);
    } else if (const auto spot = bareSpotNear(part, root_, windows_)) {
        drawSpot(*spot, part, target, originX, originY);
    } else {
        drawTiled(XCB_NONE, part, target, originX, originY);
    }
}

/// Painted anew each time, since nothing tells of a changed background.
void X11BareDesktop::drawBackground(const PixelRect& part, xcb_pixmap_t target, int originX,
                                    int originY) const {
    const std::array<std::uint32_t, 4> place{
        static_cast<std::uint32_t>(part.x - holderPlace), static_cast<std::uint32_t>(part.y - holderPlace),
        static_cast<std::uint32_t>(part.width), static_cast<std::uint32_t>(part.height)};
    xcb_configure_window(
        connection_, painter_,
        XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
        place.data());
    xcb_clear_area(connection_, 0, painter_, 0, 0, 0, 0);
    const xcb_pixmap_t painted = xcb_generate_id(connection_);
    xcb_composite_name_window_pixmap(connection_, painter_, painted);
    xcb_copy_area(connection_, painted, target, copying_, 0, 0, static_cast<std::int16_t>(part.x - originX),
                  static_cast<std::int16_t>(part.y - originY), static_cast<std::uint16_t>(part.width),
                  static_cast<std::uint16_t>(part.height));
    xcb_free_pixmap(connection_, painted);
}

/// Black where there is no tile, or it is gone.
void X11BareDesktop::drawTiled(xcb_pixmap_t tile, const PixelRect& part, xcb_pixmap_t target, int originX,
                               int originY) const {
    const xcb_gcontext_t filling = xcb_generate_id(connection_);
    const std::uint32_t black = connection_.screen().black_pixel;
    xcb_create_gc(connection_, filling, target, XCB_GC_FOREGROUND, &black);
    if (tile != XCB_NONE) {
        const std::array<std::uint32_t, 4> values{XCB_FILL_STYLE_TILED, tile,
                                                  static_cast<std::uint32_t>(-originX),
                                                  static_cast<std::uint32_t>(-originY)};
        xcb_change_gc(
            connection_, filling,
            XCB_GC_FILL_STYLE | XCB_GC_TILE | XCB_GC_TILE_STIPPLE_ORIGIN_X | XCB_GC_TILE_STIPPLE_ORIGIN_Y,
            values.data());
    }
    const xcb_rectangle_t area{
        static_cast<std::int16_t>(part.x - originX), static_cast<std::int16_t>(part.y - originY),
        static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height)};
    xcb_poly_fill_rectangle(connection_, target, filling, 1, &area);
    xcb_free_gc(connection_, filling);
}

void X11BareDesktop::drawSpot(const PixelRect& spot, const PixelRect& part, xcb_pixmap_t target, int originX,
                              int originY) const {
    const xcb_pixmap_t tile = xcb_generate_id(connection_);
    xcb_create_pixmap(connection_, connection_.screen().root_depth, tile, connection_.root(), 1, 1);
    xcb_copy_area(connection_, connection_.root(), tile, copying_, static_cast<std::int16_t>(spot.x),
                  static_cast<std::int16_t>(spot.y), 0, 0, 1, 1);
    drawTiled(tile, part, target, originX, originY);
    xcb_free_pixmap(connection_, tile);
}

}  // namespace tessaloom
