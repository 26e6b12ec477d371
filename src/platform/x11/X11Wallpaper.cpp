// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Wallpaper.h"

#include <algorithm>
#include <cstring>

namespace tessaloom {
namespace {

constexpr std::size_t bytesPerPixel = 4;

BgraImage tiled(const std::uint8_t* pixels, int tileWidth, int tileHeight, int width, int height) {
    BgraImage picture(width, height);
    for (int y = 0; y < height; ++y) {
        const auto offset = static_cast<std::size_t>(y % tileHeight) * static_cast<std::size_t>(tileWidth);
        for (int x = 0; x < width; x += tileWidth) {
            const auto count = static_cast<std::size_t>(std::min(tileWidth, width - x));
            std::memcpy(picture.row(y) + static_cast<std::size_t>(x) * bytesPerPixel,
                        pixels + offset * bytesPerPixel, count * bytesPerPixel);
        }
    }
    return picture;
}

}  // namespace

xcb_pixmap_t wallpaperPixmap(const X11Connection& connection) {
    const auto pixmap = connection.property32(connection.root(), connection.atom("_XROOTPMAP_ID"));
    return pixmap.empty() ? XCB_NONE : pixmap.front();
}

BgraImage readWallpaper(const X11Connection& connection) {
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
    return tiled(xcb_get_image_data(image.get()), size->width, size->height,
                 connection.screen().width_in_pixels, connection.screen().height_in_pixels);
}

}  // namespace tessaloom
