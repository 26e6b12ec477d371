// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Wallpaper.h"

#include <algorithm>
#include <cstring>

namespace tessaloom {
namespace {

constexpr std::size_t bytesPerPixel = 4;

/// What the repeated tile shows in `area`.
BgraImage tiled(const std::uint8_t* tile, int tileWidth, int tileHeight, const PixelRect& area) {
    BgraImage picture(area.width, area.height);
    for (int y = 0; y < area.height; ++y) {
        const std::uint8_t* row = tile + bytesPerPixel * static_cast<std::size_t>(tileWidth) *
                                             static_cast<std::size_t>((area.y + y) % tileHeight);
        for (int x = 0, count = 0; x < area.width; x += count) {
            const int start = (area.x + x) % tileWidth;
            count = std::min(tileWidth - start, area.width - x);
            std::memcpy(picture.row(y) + bytesPerPixel * static_cast<std::size_t>(x),
                        row + bytesPerPixel * static_cast<std::size_t>(start),
                        bytesPerPixel * static_cast<std::size_t>(count));
        }
    }
    return picture;
}

}  // namespace

xcb_pixmap_t wallpaperPixmap(const X11Connection& connection) {
    const auto pixmap = connection.property32(connection.root(), connection.atom("_XROOTPMAP_ID"));
    return pixmap.empty() ? XCB_NONE : pixmap.front();
}

BgraImage readWallpaper(const X11Connection& connection, const PixelRect& area) {
    const xcb_pixmap_t pixmap = wallpaperPixmap(connection);
    if (pixmap == XCB_NONE) return {};
    const auto geometryCookie = xcb_get_geometry(connection, pixmap);
    const X11Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    if (!size || size->depth != connection.screen().root_depth) return {};
    const auto imageCookie =
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0, size->width, size->height, ~0U);
    const X11Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(connection, imageCookie, nullptr));
    const auto expected = bytesPerPixel * size->width * size->height;
    if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) != expected) return {};
    return tiled(xcb_get_image_data(image.get()), size->width, size->height, area);
}

}  // namespace tessaloom
