// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/Geometry.h"

namespace tessaloom {

/// Tells presses of the left button in a row from single ones.
class ClickCounter {
  public:
    /// How many presses in a row this one makes, itself included. Time in seconds; the place, in points, may
    /// be unknown.
    int press(double time, const std::optional<Point>& place);

  private:
    int count_ = 0;
    double lastTime_ = 0;
    std::optional<Point> lastPlace_;
};

}  // namespace tessaloom
