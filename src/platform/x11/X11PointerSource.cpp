// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11PointerSource.h"

namespace tessaloom {

std::optional<Point> X11PointerSource::location() {
    const auto cookie = xcb_query_pointer(*connection_, connection_->root());
    const X11Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(*connection_, cookie, nullptr));
    if (!reply || reply->same_screen == 0) return std::nullopt;
    return Point{reply->root_x / pointPixelScale_, reply->root_y / pointPixelScale_};
}

}  // namespace tessaloom
