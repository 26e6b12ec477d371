// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// Plane geometry in 64-bit floats, origin top left, y downwards. The unit (pixels, points, fractions) is the
/// owner's to say.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double minX() const { return x; }
    double minY() const { return y; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    double midX() const { return x + width * 0.5; }
    double midY() const { return y + height * 0.5; }

    bool operator==(const Rect&) const = default;
};

}  // namespace tessaloom
