// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

#include "core/CutTimeline.h"

namespace tessaloom {

/// A piece of the timeline between two neighbouring cuts, in source seconds, with or without the camera.
struct CameraBand {
    TimeSegment range;
    bool shown = true;

    bool operator==(const CameraBand&) const = default;
};

/// The bands that the split points make of the trimmed recording, ascending. The camera is off in a band
/// whose middle lies in a hidden range. None when the trim leaves nothing.
std::vector<CameraBand> cameraBands(const CutInputs& inputs, std::span<const TimeSegment> hiddenRanges);

/// Whether the camera is on where the timeline begins; it is where there are no bands.
bool cameraInitiallyShown(std::span<const CameraBand> bands);

/// The source times at which the camera goes on or off, ascending.
std::vector<double> cameraTransitions(std::span<const CameraBand> bands);

}  // namespace tessaloom
