// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CameraBand.h"

namespace tessaloom {

std::vector<CameraBand> cameraBands(const CutInputs& inputs, std::span<const TimeSegment> hiddenRanges) {
    std::vector<CameraBand> bands;
    for (const TimeSegment& piece : piecesBetweenSplits(inputs))
        bands.push_back({piece, !middleLiesInAny(hiddenRanges, piece)});
    return bands;
}

bool cameraInitiallyShown(std::span<const CameraBand> bands) {
    return bands.empty() || bands.front().shown;
}

std::vector<double> cameraTransitions(std::span<const CameraBand> bands) {
    std::vector<double> transitions;
    bool shown = cameraInitiallyShown(bands);
    for (const CameraBand& band : bands) {
        if (band.shown != shown) transitions.push_back(band.range.start);
        shown = band.shown;
    }
    return transitions;
}

}  // namespace tessaloom
