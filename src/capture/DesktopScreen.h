// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "media/PixelRect.h"

namespace tessaloom {

/// A screen as the desktop's settings know it.
struct DesktopScreen {
    std::string name;  ///< of its output, as "HDMI-1"
    int number = 0;    ///< 0 for the primary one
    PixelRect area;    ///< in pixels of the whole desktop
};

}  // namespace tessaloom
