// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/ClickEffects.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaloom {
namespace {

constexpr double bounceSeconds = 0.22;
constexpr double bounceHeight = 0.35;

// Written so that a time that is no number counts as out of order.
bool inAscendingOrder(const std::vector<ClickEffects::Click>& clicks) {
    return std::ranges::adjacent_find(
               clicks, [](const auto& a, const auto& b) { return !(a.pts <= b.pts); }) == clicks.end();
}

bool isWithin(double age, double length) {
    return age >= 0 && age <= length;
}

}  // namespace

ClickEffects::ClickEffects(std::span<const InputEvent> events) {
    for (const InputEvent& event : events) {
        if (event.isClick() && event.location) clicks_.push_back({event.pts, *event.location});
    }
    ascending_ = inAscendingOrder(clicks_);
}

std::span<const ClickEffects::Click> ClickEffects::recent(double time, double age) const {
    const std::span<const Click> all = clicks_;
    if (!ascending_) return all;
    const auto first =
        std::ranges::partition_point(all, [time, age](const Click& click) { return time - click.pts > age; });
    const auto last =
        std::partition_point(first, all.end(), [time](const Click& click) { return time - click.pts >= 0; });
    return {first, last};
}

std::vector<ClickEffects::Ripple> ClickEffects::ripples(double time) const {
    std::vector<Ripple> ripples;
    for (const Click& click : recent(time, duration)) {
        const double age = time - click.pts;
        if (isWithin(age, duration)) ripples.push_back({click.point, age / duration});
    }
    return ripples;
}

double ClickEffects::bounce(double time) const {
    double greatest = 0;
    for (const Click& click : recent(time, bounceSeconds)) {
        const double age = time - click.pts;
        if (!isWithin(age, bounceSeconds)) continue;
        greatest = std::max(greatest, std::sin(age / bounceSeconds * std::numbers::pi));
    }
    return 1 + bounceHeight * greatest;
}

std::optional<double> ClickEffects::secondsSinceClick(double time) const {
    const auto isPast = [time](const Click& click) { return click.pts <= time; };
    const auto click =
        ascending_ ? std::make_reverse_iterator(std::partition_point(clicks_.begin(), clicks_.end(), isPast))
                   : std::find_if(clicks_.rbegin(), clicks_.rend(), isPast);
    if (click == clicks_.rend()) return std::nullopt;
    return time - click->pts;
}

}  // namespace tessaloom
