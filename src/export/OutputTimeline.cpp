// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/OutputTimeline.h"

#include <algorithm>
#include <cmath>

#include "core/CutTimeline.h"

namespace tessaloom {
namespace {

constexpr double shortestKept = 0.0001;
/// A year: a damaged length can't overflow the count of frames.
constexpr double longestOutput = 366.0 * 24 * 3600;

double keptLength(std::span<const TimeSegment> segments) {
    double sum = 0;
    for (const TimeSegment& segment : segments)
        sum += segment.length();
    return std::max(sum, shortestKept);
}

}  // namespace

double exportSpeed(double speed) {
    return speed > 0 && std::isfinite(speed) ? speed : 1;
}

OutputTimeline::OutputTimeline(std::span<const TimeSegment> segments, double speed, double framesPerSecond)
    : segments_(validRanges(segments)), speed_(exportSpeed(speed)), framesPerSecond_(framesPerSecond) {
    frameCount_ = std::max(std::llround(framesPerSecond * duration()), 1LL);
}

double OutputTimeline::duration() const {
    return std::min(keptLength(segments_) / speed_, longestOutput);
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
