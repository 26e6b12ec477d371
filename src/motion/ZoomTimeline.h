// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/RelativeRect.h"
#include "core/ZoomKeyframe.h"

namespace tessaloom {

/// Which part of the recording the view shows at a source time: a table of rectangles, one per 1/60 s, that
/// follows the keyframes through a low-pass filter. Immutable; callable from any thread.
///
/// The filter settles: once its next output is the same to the last bit, so are all that follow until the
/// curve moves again. Only samples that differ from the one before are stored, and only they cost time. So a
/// table is as large as its motion, which is the easing and gliding of its blocks and the settling after it
/// (2.5 minutes down to a coordinate of 0, at most), however long the recording is.
class ZoomTimeline {
  public:
    static constexpr double sampleStep = 1.0 / 60.0;
    /// Between two blocks at most this many seconds apart the camera glides without leaving the zoom.
    static constexpr double bridgeGap = 1.2;
    /// Samples beyond have no whole number of their own, and times that far no 1/60 s.
    static constexpr double greatestSampleCount = 9007199254740992.0;
    /// Samples that are worked out, 24 hours of motion: more than any recording needs, and 166 MB at most
    /// for damaged keyframes. Beyond them the last rectangle holds.
    static constexpr std::uint64_t longestMotion = 24ULL * 3600 * 60 + 2;

    /// The whole frame at any time.
    ZoomTimeline() = default;
    /// `duration` of the recording in seconds. Where keyframes overlap the earlier one in the list wins.
    ZoomTimeline(std::vector<ZoomKeyframe> keyframes, double duration);

    const std::vector<ZoomKeyframe>& keyframes() const { return keyframes_; }
    std::uint64_t sampleCount() const { return sampleCount_; }
    /// `index` must be less than sampleCount().
    RelativeRect sample(std::uint64_t index) const;
    /// How many samples take memory.
    std::size_t storedCount() const { return stored_.size(); }

    /// Times before the table hold its first rectangle, times after it the last.
    RelativeRect rect(double time) const;

    /// The unfiltered rectangle that the table follows.
    static RelativeRect curve(std::span<const ZoomKeyframe> keyframes, double time, double bridgeGap);

    bool operator==(const ZoomTimeline&) const = default;

  private:
    /// Samples of a run, from `firstSample` on, that are stored one after the other from `place` on. The last
    /// of them holds until the next stretch.
    struct Stretch {
        std::uint64_t firstSample = 0;
        std::size_t place = 0;

        bool operator==(const Stretch&) const = default;
    };

    void build();

    std::vector<ZoomKeyframe> keyframes_;
    std::uint64_t sampleCount_ = 0;
    std::vector<Stretch> stretches_;
    std::vector<RelativeRect> stored_;
};

}  // namespace tessaloom
