// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/CutFacts.h"

#include "core/Json.h"

namespace tessaloom {
namespace {

/// A list of [start, end].
std::vector<std::vector<double>> pairs(const std::vector<TimeSegment>& ranges) {
    std::vector<std::vector<double>> result;
    result.reserve(ranges.size());
    for (const TimeSegment& range : ranges)
        result.push_back({range.start, range.end});
    return result;
}

double totalLength(const std::vector<TimeSegment>& ranges) {
    double sum = 0;
    for (const TimeSegment& range : ranges)
        sum += range.length();
    return sum;
}

}  // namespace

template <typename Coder, RecordOf<ClipSegment> Record>
void fields(Coder& coder, Record& segment) {
    coder.field("start", segment.range.start);
    coder.field("end", segment.range.end);
    coder.field("removed", segment.removed);
}

template <typename Coder, RecordOf<CameraBand> Record>
void fields(Coder& coder, Record& band) {
    coder.field("start", band.range.start);
    coder.field("end", band.range.end);
    coder.field("shown", band.shown);
}

std::string cutFacts(const OpenTake& take) {
    const CutInputs inputs = take.cutInputs();
    const std::vector<TimeSegment> kept = keptRanges(inputs);
    JsonDocument document;
    JsonWriter writer(document, document.GetAllocator());
    writer.fieldOrNull("totalDuration", take.totalDuration);
    writer.fieldOrNull("trimStart", take.trimStart);
    writer.fieldOrNull("trimEnd", take.trimEnd);
    writer.field("kept", pairs(kept));
    writer.field("playable", pairs(playableRanges(inputs)));
    writer.field("segments", timelineSegments(inputs));
    writer.field("cameraBands", take.cameraBands());
    writer.fieldOrNull("speed", take.edit.speed);
    writer.fieldOrNull("outputDuration", totalLength(kept) / take.edit.speed);
    return prettyJson(document);
}

}  // namespace tessaloom
