// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Compositing.h"

namespace tessaloom {

bool isComposited(const X11Connection& connection) {
    const xcb_atom_t selection = connection.atom("_NET_WM_CM_S0");
    if (selection == XCB_ATOM_NONE) return false;
    const X11Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

}  // namespace tessaloom
