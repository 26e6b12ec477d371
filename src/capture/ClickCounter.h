// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/Geometry.h"

namespace tessaloom {

/// Within what presses count as one double click: the user's own settings, or else the usual defaults of
/// Linux toolkits (Qt and GTK both use 400 ms and 5 pixels).
struct ClickLimits {
    double longestPauseSeconds = 0.4;
    double greatestDistancePoints = 5.0;

    bool operator==(const ClickLimits&) const = default;
};

/// Tells presses of the left button in a row from single ones.
class ClickCounter {
  public:
    explicit ClickCounter(const ClickLimits& limits = {}) : limits_(limits) {}

    /// How many presses in a row this one makes, itself included. Time in seconds; the place, in points, may
    /// be unknown.
    int press(double time, const std::optional<Point>& place);

  private:
    bool isNear(const std::optional<Point>& place) const;

    ClickLimits limits_;
    int count_ = 0;
    double lastTime_ = 0;
    std::optional<Point> lastPlace_;
};

}  // namespace tessaloom
