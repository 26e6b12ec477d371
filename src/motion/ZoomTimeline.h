// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "core/RelativeRect.h"
#include "core/ZoomKeyframe.h"

namespace tessaloom {

/// Which part of the recording the view shows at a source time: a table of rectangles, one per 1/60 s, that
/// follows the keyframes through a low-pass filter. Immutable; callable from any thread.
class ZoomTimeline {
  public:
    static constexpr double sampleStep = 1.0 / 60.0;
    /// Between two blocks at most this many seconds apart the camera glides without leaving the zoom.
    static constexpr double bridgeGap = 1.2;
    /// Beyond this many seconds the table holds its last rectangle, so that a damaged duration can't exhaust
    /// the memory.
    static constexpr double longestDuration = 24 * 3600.0;

    /// The whole frame at any time.
    ZoomTimeline() = default;
    /// `duration` of the recording in seconds. Where keyframes overlap the earlier one in the list wins.
    ZoomTimeline(std::vector<ZoomKeyframe> keyframes, double duration);

    const std::vector<ZoomKeyframe>& keyframes() const { return keyframes_; }
    const std::vector<RelativeRect>& samples() const { return samples_; }

    /// Times before the table hold its first rectangle, times after it the last.
    RelativeRect rect(double time) const;

    /// The unfiltered rectangle that the table follows.
    static RelativeRect curve(std::span<const ZoomKeyframe> keyframes, double time, double bridgeGap);

    bool operator==(const ZoomTimeline&) const = default;

  private:
    std::vector<ZoomKeyframe> keyframes_;
    std::vector<RelativeRect> samples_;
};

}  // namespace tessaloom
