// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CutTimeline.h"

#include <algorithm>
#include <iterator>

namespace tessaloom {
namespace {

constexpr double minimumPiece = 0.02;
constexpr double splitMargin = 0.01;
constexpr double keptMatchSlack = 0.001;

std::vector<TimeSegment> speechWithin(std::span<const TimeSegment> kept, double low, double high) {
    std::vector<TimeSegment> ranges;
    for (const TimeSegment& segment : kept) {
        const TimeSegment range{std::max(segment.start, low), std::min(segment.end, high)};
        if (range.length() > minimumPiece) ranges.push_back(range);
    }
    return ranges;
}

std::vector<TimeSegment> removedRanges(const CutInputs& inputs) {
    std::vector<TimeSegment> removed = inputs.removedRanges;
    if (inputs.removeFillers)
        removed.insert(removed.end(), inputs.fillerRanges.begin(), inputs.fillerRanges.end());
    return removed;
}

// `whole` is what remains when the silences stay.
std::vector<TimeSegment> rangesWithin(const CutInputs& inputs, double low, double high, TimeSegment whole) {
    std::vector<TimeSegment> ranges;
    if (inputs.removeSilences) ranges = speechWithin(inputs.keptSegments, low, high);
    if (ranges.empty()) ranges.push_back(whole);
    auto remaining = subtract(removedRanges(inputs), ranges);
    return remaining.empty() ? ranges : remaining;
}

std::vector<TimeSegment> without(const TimeSegment& removed, std::span<const TimeSegment> ranges) {
    const double low = removed.start;
    const double high = std::max(removed.start, removed.end);
    std::vector<TimeSegment> pieces;
    for (const TimeSegment& range : ranges) {
        if (high <= range.start || range.end <= low) {
            pieces.push_back(range);
            continue;
        }
        if (range.start + minimumPiece < low) pieces.push_back({range.start, low});
        if (high < range.end - minimumPiece) pieces.push_back({high, range.end});
    }
    return pieces;
}

std::vector<double> boundaries(const CutInputs& inputs) {
    const auto [low, high] = std::minmax(inputs.trimStart, inputs.trimEnd);
    std::vector<double> points{low};
    for (const double point : inputs.splitPoints) {
        if (low + splitMargin < point && point < high - splitMargin) points.push_back(point);
    }
    std::ranges::sort(points);
    points.push_back(high);
    return points;
}

}  // namespace

std::vector<TimeSegment> keptRanges(const CutInputs& inputs) {
    const double low = std::min(inputs.trimStart, inputs.trimEnd);
    const double high = std::max(inputs.trimStart, inputs.trimEnd);
    return rangesWithin(inputs, low, high, {low, high});
}

std::vector<TimeSegment> playableRanges(const CutInputs& inputs) {
    constexpr double shortest = 0.01;
    return rangesWithin(inputs, 0, inputs.totalDuration, {0, std::max(inputs.totalDuration, shortest)});
}

std::vector<TimeSegment> piecesBetweenSplits(const CutInputs& inputs) {
    std::vector<TimeSegment> pieces;
    const std::vector<double> points = boundaries(inputs);
    for (std::size_t index = 0; index + 1 < points.size(); ++index) {
        const TimeSegment piece{points[index], points[index + 1]};
        if (piece.start + minimumPiece < piece.end) pieces.push_back(piece);
    }
    return pieces;
}

std::vector<ClipSegment> timelineSegments(const CutInputs& inputs) {
    std::vector<ClipSegment> segments;
    for (const TimeSegment& piece : piecesBetweenSplits(inputs))
        segments.push_back({piece, middleLiesInAny(inputs.removedRanges, piece)});
    return segments;
}

bool middleLiesInAny(std::span<const TimeSegment> ranges, const TimeSegment& piece) {
    const double middle = (piece.start + piece.end) * 0.5;
    return std::ranges::any_of(ranges, [middle](const TimeSegment& range) { return range.contains(middle); });
}

std::vector<TimeSegment> validRanges(std::span<const TimeSegment> segments) {
    std::vector<TimeSegment> ranges;
    std::ranges::copy_if(segments, std::back_inserter(ranges),
                         [](const TimeSegment& segment) { return segment.start < segment.end; });
    return ranges;
}

std::vector<TimeSegment> subtract(std::vector<TimeSegment> removed, std::vector<TimeSegment> ranges) {
    std::ranges::stable_sort(removed, {}, &TimeSegment::start);
    for (const TimeSegment& cut : removed)
        ranges = without(cut, ranges);
    return ranges;
}

double sourceTime(std::span<const TimeSegment> ranges, double offset) {
    if (ranges.empty()) return offset;
    double left = std::max(offset, 0.0);
    for (const TimeSegment& range : ranges) {
        if (left <= range.length()) return left + range.start;
        left -= range.length();
    }
    return ranges.back().end;
}

double resultTime(std::span<const TimeSegment> ranges, double time) {
    double sum = 0;
    for (const TimeSegment& range : ranges) {
        if (time < range.start) return sum;
        if (time <= range.end) return sum + (time - range.start);
        sum += range.length();
    }
    return sum;
}

std::optional<double> nextKeptStart(std::span<const TimeSegment> ranges, double time) {
    const bool isKept = std::ranges::any_of(ranges, [time](const TimeSegment& range) {
        return range.start - keptMatchSlack <= time && time <= range.end + keptMatchSlack;
    });
    if (isKept) return std::nullopt;
    const auto next =
        std::ranges::find_if(ranges, [time](const TimeSegment& range) { return time < range.start; });
    if (next == ranges.end()) return std::nullopt;
    return next->start;
}

}  // namespace tessaloom
