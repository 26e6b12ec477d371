// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/TimeSegment.h"

namespace tessaloom {

/// All that decides what is left out of the result, in source seconds.
struct CutInputs {
    double trimStart = 0;
    double trimEnd = 0;
    double totalDuration = 0;
    bool removeSilences = false;
    std::vector<TimeSegment> keptSegments;
    bool removeFillers = false;
    std::vector<TimeSegment> fillerRanges;
    std::vector<TimeSegment> removedRanges;
    std::vector<double> splitPoints;
};

/// One block of the timeline between two neighbouring cuts.
struct ClipSegment {
    TimeSegment range;
    bool removed = false;

    bool operator==(const ClipSegment&) const = default;
};

/// The source ranges of the result, ascending, within the trim. Never empty: when everything is cut away the
/// cuts don't count.
std::vector<TimeSegment> keptRanges(const CutInputs& inputs);

/// The same over the whole recording, without the trim.
std::vector<TimeSegment> playableRanges(const CutInputs& inputs);

/// What the split points make of the trimmed recording, ascending. Pieces of 0.02 s or less are left out.
std::vector<TimeSegment> piecesBetweenSplits(const CutInputs& inputs);

/// The blocks that the split points make of the trimmed recording. A block counts as removed when its middle
/// lies in a removed range.
std::vector<ClipSegment> timelineSegments(const CutInputs& inputs);

/// How a mark that was put on a piece finds it again, also after the piece's ends have moved a little.
bool middleLiesInAny(std::span<const TimeSegment> ranges, const TimeSegment& piece);

/// The segments that have a length.
std::vector<TimeSegment> validRanges(std::span<const TimeSegment> segments);

/// Takes `removed`, in any order, away from `ranges`. Pieces of 0.02 s or less at the edge of a cut
/// disappear.
std::vector<TimeSegment> subtract(std::vector<TimeSegment> removed, std::vector<TimeSegment> ranges);

/// The source time of a position in the result (seconds at speed 1). Holds the last end beyond the result;
/// without ranges the position is its own source time.
double sourceTime(std::span<const TimeSegment> ranges, double offset);

/// The other way: the position in the result of a source time; one inside a cut is where the cut was made.
double resultTime(std::span<const TimeSegment> ranges, double time);

/// Where to go on from a source time that lies in a cut; nothing when it lies in the result or after it.
std::optional<double> nextKeptStart(std::span<const TimeSegment> ranges, double time);

}  // namespace tessaloom
