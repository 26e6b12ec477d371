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

/// The furthest pixel from `inside` towards `end` for which `holds`, when it holds up to some pixel and not
/// after.
template <class Predicate>
int furthestWhere(int inside, int end, Predicate holds) {
    while (inside != end) {
        const int towardsEnd = end > inside ? 1 : -1;
        const int middle = inside + (end - inside + towardsEnd) / 2;
        if (holds(middle)) {
            inside = middle;
        } else {
            end = middle - towardsEnd;
        }
    }
    return inside;
}

/// The pixels of 0 to `width` for which `holds`, when it holds from some pixel to some other around `middle`.
template <class Predicate>
PixelSpan spanAround(double middle, int width, Predicate holds) {
    const int inside = static_cast<int>(std::clamp(std::floor(middle), 0.0, width - 1.0));
    if (!holds(inside)) return {};
    return {furthestWhere(inside, 0, holds), furthestWhere(inside, width - 1, holds) + 1};
}

}  // namespace tessaloom
