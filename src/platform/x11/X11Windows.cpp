// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11Windows.h"

#include <sys/socket.h>
#include <xcb/xcb.h>

#include <QGuiApplication>

namespace tessaloom {

void hangUpWindows() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Only the reading side: a write under way must not meet a broken pipe.
    if (x11 != nullptr) shutdown(xcb_get_file_descriptor(x11->connection()), SHUT_RD);
}

}  // namespace tessaloom
