// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/Geometry.h"

namespace tessaloom {

struct ShareableDisplay {
    Rect bounds;  ///< global points
    bool isMain = false;
};

struct ShareableWindow {
    std::uint32_t id = 0;
    Rect frame;                    ///< global points, without the window manager's decoration
    std::string applicationName;   ///< as the desktop's menu has it, or its process's name
    std::string bundleIdentifier;  ///< of its windows: their class
    std::string desktopID = {};    ///< of the menu's entry; empty without one
    std::string title;
    bool isNormal = true;   ///< an application's own window, not a panel, menu or desktop
    bool isOurOwn = false;  ///< belongs to this program
};

/// What can be recorded at one moment: displays in the desktop's order, windows from the topmost down.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
    std::vector<ShareableWindow> windows;
    double pointPixelScale = 1.0;  ///< pixels per point
};

}  // namespace tessaloom
