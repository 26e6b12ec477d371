// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include "core/EventLog.h"
#include "core/ZoomKeyframe.h"

namespace tessaloom {

/// Turns the log of a finished recording into its first list of zoom blocks: clicks that belong together make
/// one block, and typing keeps it up. Pure; callable from any thread.
struct ZoomEngine {
    struct Settings {
        /// Magnification of a block; the target's side is its inverse.
        double zoomFactor = 2.0;
        /// Seconds from an episode's last click within which a click joins it, and the reach of typing past
        /// its end.
        double clusterGap = 1.5;
        /// Distance from an episode's running centre within which a click joins it.
        double clusterRadius = 0.15;
        /// Seconds a block starts ahead of its first click and stays after its last click or key.
        double leadIn = 0.3;
        double holdAfter = 1.2;
        /// A block shorter than this is dropped.
        double minDwell = 0.6;
        /// Seconds and distance within which neighbouring episodes merge.
        double mergeGap = 0.5;
        double mergeProximity = 0.12;
        /// Copied to each block.
        double easeIn = 0.4;
        double easeOut = 0.8;
    };

    Settings settings;

    /// `duration` in seconds is the log's own end (logDuration).
    std::vector<ZoomKeyframe> generate(const EventLog& log, double duration) const;

    /// The same blocks at another magnification, each around its old centre.
    static std::vector<ZoomKeyframe> retarget(std::vector<ZoomKeyframe> keyframes, double zoomFactor);
};

}  // namespace tessaloom
