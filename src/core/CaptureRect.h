// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// The captured area in global screen coordinates, in points.
struct CaptureRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    /// Pixels per point.
    double displayScaleFactor = 2.0;

    bool operator==(const CaptureRect&) const = default;
};

}  // namespace tessaloom
