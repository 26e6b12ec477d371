// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <variant>

#include "core/Geometry.h"

namespace tessaloom {

/// An area must be wider and taller than this many points: anything smaller is a slip of the hand.
constexpr double smallestRegionSide = 8;

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

/// A display or window that the user is yet to pick by sight.
struct PickerSource {};

using CaptureSource =
    std::variant<MainDisplaySource, DisplaySource, RegionSource, AppWindowSource, PickerSource>;

}  // namespace tessaloom
