// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "core/TimeSegment.h"

namespace tessaloom {

/// The speed at which an edit's `speed` is exported: 1 for one that isn't above 0, or no number.
double exportSpeed(double speed);

/// Which moment of the recording each output frame shows. Immutable; callable from any thread.
class OutputTimeline {
  public:
    /// `segments` are the kept pieces in source seconds, ascending; those without a length don't count. None
    /// means the recording from its start, one frame of it. For `speed` exportSpeed() counts.
    OutputTimeline(std::span<const TimeSegment> segments, double speed, double framesPerSecond);

    const std::vector<TimeSegment>& segments() const { return segments_; }
    /// Above 0.
    double speed() const { return speed_; }

    /// Seconds of the output, more than 0.
    double duration() const;

    /// At least 1.
    std::int64_t frameCount() const { return frameCount_; }

    /// Source seconds of the frame with this index.
    double sourceTime(std::int64_t index) const;

    /// From the first kept start to the last kept end; nothing without segments.
    std::optional<TimeSegment> sourceRange() const;

  private:
    std::vector<TimeSegment> segments_;
    double speed_;
    double framesPerSecond_;
    std::int64_t frameCount_;
};

}  // namespace tessaloom
