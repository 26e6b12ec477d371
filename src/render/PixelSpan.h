// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cmath>

namespace tessaloom {

/// Neighbouring pixels of one row or column: `first` up to but not including `last`.
struct PixelSpan {
    int first = 0;
    int last = 0;

    int length() const { return std::max(last - first, 0); }
    bool empty() const { return last <= first; }
    bool contains(int pixel) const { return pixel >= first && pixel < last; }

    bool operator==(const PixelSpan&) const = default;
};

inline PixelSpan intersection(PixelSpan a, PixelSpan b) {
    return {std::max(a.first, b.first), std::min(a.last, b.last)};
}

/// The pixels of 0 to `limit` whose centres lie from `start` (inclusive) to `end` (exclusive).
inline PixelSpan pixelsBetween(double start, double end, int limit) {
    const auto firstAtOrAfter = [limit](double edge) {
        return static_cast<int>(std::clamp(std::ceil(edge - 0.5), 0.0, static_cast<double>(limit)));
    };
    return {firstAtOrAfter(start), firstAtOrAfter(end)};
}

}  // namespace tessaloom
