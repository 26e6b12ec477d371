// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// A part of the recorded frame as fractions of its width and height, origin top left. The default is the
/// whole frame.
struct RelativeRect {
    double x = 0;
    double y = 0;
    double width = 1;
    double height = 1;

    bool operator==(const RelativeRect&) const = default;
};

}  // namespace tessaloom
