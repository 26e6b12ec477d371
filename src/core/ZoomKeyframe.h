// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/RelativeRect.h"
#include "core/Uuid.h"

namespace tessaloom {

/// One zoom block: from `startPTS` to `endPTS` (source seconds) the view shows `targetRect`.
struct ZoomKeyframe {
    Uuid id = Uuid::random();
    double startPTS = 0;
    double endPTS = 0;
    RelativeRect targetRect;
    /// Seconds the way in and the way out take.
    double easeIn = 0.4;
    double easeOut = 0.8;

    bool operator==(const ZoomKeyframe&) const = default;
};

}  // namespace tessaloom
