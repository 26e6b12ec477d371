// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>

namespace tessaloom::demo {

/// A value on its way to another.
struct Animated {
    double value = 0;
    double target = 0;

    bool moving() const { return value != target; }

    void advance(double distance) {
        value = value < target ? std::min(target, value + distance) : std::max(target, value - distance);
    }

    bool operator==(const Animated&) const = default;
};

}  // namespace tessaloom::demo
