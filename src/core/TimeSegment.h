// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tessaloom {

/// A stretch of the recording in source seconds. As read from a file `start` may lie after `end`.
struct TimeSegment {
    double start = 0;
    double end = 0;

    double length() const { return end - start; }
    /// Both ends belong to it.
    bool contains(double time) const { return start <= time && time <= end; }

    bool operator==(const TimeSegment&) const = default;
};

}  // namespace tessaloom
