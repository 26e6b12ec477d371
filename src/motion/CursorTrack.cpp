// SPDX-License-Identifier: GPL-3.0-or-later
#include "motion/CursorTrack.h"

#include <algorithm>

namespace tessaloom {

std::optional<RelativePoint> CursorTrack::position(double time) const {
    if (samples_.empty()) return std::nullopt;
    const auto place = [](const CursorSample& sample) { return RelativePoint{sample.x, sample.y}; };
    if (time <= samples_.front().pts) return place(samples_.front());
    if (time >= samples_.back().pts) return place(samples_.back());
    std::size_t low = 0;
    std::size_t high = samples_.size() - 1;
    while (low + 1 < high) {
        const std::size_t middle = (low + high) / 2;
        (samples_[middle].pts < time ? low : high) = middle;
    }
    const CursorSample& before = samples_[low];
    const CursorSample& after = samples_[high];
    const double span = after.pts - before.pts;
    const double fraction = span > 0 ? (time - before.pts) / span : 0;
    return RelativePoint{before.x + (after.x - before.x) * fraction,
                         before.y + (after.y - before.y) * fraction};
}

CursorTrack CursorTrack::smoothed(double amount) const {
    if (!(amount > 0) || samples_.size() < 2) return *this;
    const double coefficient = std::max(1 - 0.95 * amount, 0.04);
    std::vector<CursorSample> samples = samples_;
    CursorSample previous = samples.front();
    for (CursorSample& sample : samples) {
        sample.x = previous.x + (sample.x - previous.x) * coefficient;
        sample.y = previous.y + (sample.y - previous.y) * coefficient;
        previous = sample;
    }
    return CursorTrack(std::move(samples));
}

double CursorTrack::idleSeconds(double time, double threshold, double maximum) const {
    constexpr double step = 0.25;
    const auto here = position(time);
    if (!here) return 0;
    for (int steps = 1; steps * step <= maximum; ++steps) {
        const auto there = position(time - steps * step);
        if (distance(*here, *there) > threshold) return (steps - 1) * step;
    }
    return maximum;
}

}  // namespace tessaloom
