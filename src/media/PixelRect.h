// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// A rectangle of whole pixels, origin top left.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;
};

}  // namespace tessaloom
