// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// Where the pointer was, `pts` seconds after the first frame, as fractions of the captured area.
struct CursorSample {
    double pts = 0;
    double x = 0;
    double y = 0;

    bool operator==(const CursorSample&) const = default;
};

}  // namespace tessaloom
