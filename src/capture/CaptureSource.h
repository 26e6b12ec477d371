// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "core/Geometry.h"

namespace tessaloom {

/// What the user asked to record, not yet looked up on the screen.
struct MainDisplaySource {};

/// A display by its number, counted from 0 in the desktop's order.
struct DisplaySource {
    int number = 0;
};

/// An area in global display points, origin top left.
struct RegionSource {
    Rect area;
};

/// A window by its application's name, and its title when several could match.
struct AppWindowSource {
    std::string app;
    std::optional<std::string> title;
};

using CaptureSource = std::variant<MainDisplaySource, DisplaySource, RegionSource, AppWindowSource>;

}  // namespace tessaloom
