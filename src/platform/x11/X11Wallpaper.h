// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/BgraImage.h"
#include "media/PixelRect.h"
#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// The pixmap that programs which set wallpapers leave on the root window; none when there isn't one.
xcb_pixmap_t wallpaperPixmap(const X11Connection& connection);

/// Its pixels in a part of the screen, repeated as needed; empty when there is none that can be read.
BgraImage readWallpaper(const X11Connection& connection, const PixelRect& area);

}  // namespace tessaloom
