// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "core/Geometry.h"

namespace tessaloom {

/// What a screen stream shows: a whole display, or one window by itself.
struct ContentFilter {
    std::optional<std::uint32_t> window;  ///< absent for a display
    Rect contentRect;                     ///< global points
    double pointPixelScale = 1.0;
};

/// A capture source found on the screen.
struct CaptureTarget {
    ContentFilter filter;
    std::optional<Rect> displayBounds;  ///< the chosen display's, absent for the main display and for windows
    std::optional<Rect> region;         ///< the asked-for area, cut to its display
};

}  // namespace tessaloom
