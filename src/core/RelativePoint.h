// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// A place in the recorded frame as fractions of its width and height, origin top left. The default is the
/// centre.
struct RelativePoint {
    double x = 0.5;
    double y = 0.5;

    bool operator==(const RelativePoint&) const = default;
};

/// Euclidean distance on the fractions themselves: each axis is normalised separately.
double distance(RelativePoint a, RelativePoint b);

}  // namespace tessaloom
