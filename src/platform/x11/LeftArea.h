// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "media/PixelRect.h"

namespace tessaloom {

/// Where a window of this program no longer is, but may still be shown: a compositing manager takes its time,
/// and fades windows out.
struct LeftArea {
    /// Fading out included.
    static constexpr double longestRepaintSeconds = 0.4;

    PixelRect area;    ///< in root coordinates
    double since = 0;  ///< HostClock seconds

    bool isClear(double now) const { return now >= since + longestRepaintSeconds; }
};

}  // namespace tessaloom
