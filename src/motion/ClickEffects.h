// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/InputEvent.h"
#include "core/RelativePoint.h"

namespace tessaloom {

/// What clicks do to the picture: running ripples and the pointer's bounce. Immutable; callable from any
/// thread.
class ClickEffects {
  public:
    struct Click {
        double pts = 0;
        RelativePoint point;

        bool operator==(const Click&) const = default;
    };

    struct Ripple {
        RelativePoint point;
        /// 0 at the click, 1 at the ripple's end.
        double progress = 0;

        bool operator==(const Ripple&) const = default;
    };

    /// Seconds a ripple runs.
    static constexpr double duration = 0.5;

    ClickEffects() = default;
    /// Takes the clicks that have a location, in the list's order.
    explicit ClickEffects(std::span<const InputEvent> events);

    const std::vector<Click>& clicks() const { return clicks_; }

    std::vector<Ripple> ripples(double time) const;

    /// Factor on the pointer's size: 1 at rest, up to 1.35 shortly after a click.
    double bounce(double time) const;

    /// Seconds since the last click in the list that is not in the future; nothing before the first.
    std::optional<double> secondsSinceClick(double time) const;

    bool operator==(const ClickEffects&) const = default;

  private:
    /// The clicks at most `age` seconds old, and perhaps others when the list is not in time order.
    std::span<const Click> recent(double time, double age) const;

    std::vector<Click> clicks_;
    bool ascending_ = true;
};

}  // namespace tessaloom
