// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/OutputTimeline.h"

#include <algorithm>
#include <cmath>

#include "core/CutTimeline.h"

namespace tessaloom {
namespace {

constexpr double shortestKept = 0.0001;
/// A year at 60 frames a second: a damaged length can't overflow the count.
constexpr double mostFrames = 60.0 * 366 * 24 * 3600;

double keptLength(std::span<const TimeSegment> segments) {
    double sum = 0;
    for (const TimeSegment& segment : segments)
        sum += segment.length();
    return std::max(sum, shortestKept);
}

}  // namespace

OutputTimeline::OutputTimeline(std::span<const TimeSegment> segments, double speed, double framesPerSecond)
    : segments_(validRanges(segments)), speed_(speed > 0 ? speed : 1), framesPerSecond_(framesPerSecond) {
    const double frames = std::round(framesPerSecond * keptLength(segments_) / speed_);
    frameCount_ = static_cast<std::int64_t>(std::clamp(frames, 1.0, mostFrames));
}

double OutputTimeline::sourceTime(std::int64_t index) const {
    const double outputTime = static_cast<double>(index) / framesPerSecond_;
    return tessaloom::sourceTime(segments_, outputTime * speed_);
}

std::optional<TimeSegment> OutputTimeline::sourceRange() const {
    if (segments_.empty()) return std::nullopt;
    const TimeSegment range{segments_.front().start, segments_.back().end};
    return range.start < range.end ? std::optional(range) : std::nullopt;
}

}  // namespace tessaloom
