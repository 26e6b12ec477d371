// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "capture/DesktopScreen.h"
#include "media/BgraImage.h"

namespace tessaloom {

/// The picture that the settings of the running desktop (GNOME, KDE's Plasma, XFCE) name as the screen's
/// wallpaper, in its own size, or a drawing in the screen's. Nothing on other desktops, and where there is
/// none that can be read. Takes two seconds at most for the settings.
std::optional<BgraImage> desktopWallpaper(const DesktopScreen& screen);

}  // namespace tessaloom
