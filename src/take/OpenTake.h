// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/CameraBand.h"
#include "core/CutTimeline.h"
#include "core/EditParams.h"
#include "core/EventLog.h"
#include "core/Geometry.h"
#include "core/TakeBundle.h"
#include "motion/ClickEffects.h"
#include "motion/CursorTrack.h"
#include "motion/KeystrokeTrack.h"
#include "motion/ZoomTimeline.h"
#include "render/FrameComposer.h"
#include "take/TolerantReading.h"

namespace tessaloom {

/// A recording as it was found on disk, with all that follows from its log and its edit. A plain value; times
/// are source seconds.
struct OpenTake {
    TakeBundle bundle;
    EditParams edit;
    EventLog log;
    /// One sentence about the JSON files that could not be read and were replaced by their defaults, and one
    /// about a broken-off recording that could not be completed.
    Warnings warnings;

    /// Smoothed as the edit says.
    CursorTrack cursorTrack;
    ClickEffects clickEffects;
    KeystrokeTrack keystrokeTrack;
    ZoomTimeline zoomTimeline;
    /// The recorded area's width over its height.
    double recordingAspect = 0;
    /// Width of the recorded area in points.
    double capturePointWidth = 0;
    /// The recorded area in pixels.
    Size recordingPixelSize;
    /// The log's own end; 0 when it is empty.
    double totalDuration = 0;
    /// The trim, held within the recording.
    double trimStart = 0;
    double trimEnd = 0;

    /// Reads the bundle; a take whose recorder died is completed first. Never fails: what can't be read has
    /// its defaults.
    static OpenTake open(const TakeBundle& bundle);

    /// What decides the cuts, over the log's own length.
    CutInputs cutInputs() const;

    /// Where the camera is on and off, over the log's own length.
    std::vector<CameraBand> cameraBands() const;

    /// The pieces that an export shows, ascending, each with a length. Where the log is empty, the movie's
    /// own length in seconds stands in for the recording's.
    std::vector<TimeSegment> keptSegments(double movieDuration) const;

    /// The chosen background picture, whether or not the file is there.
    std::optional<std::filesystem::path> wallpaper() const;

    /// The cursor's size and hot spot are the renderer's, in points.
    FrameComposer composer(Size cursorImageSize, Point cursorHotspot) const;

    bool operator==(const OpenTake&) const = default;
};

}  // namespace tessaloom
