// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/TakeBundle.h"
#include "core/TimeSegment.h"
#include "core/WebcamConfig.h"
#include "export/HeldFrameReader.h"

namespace tessaloom {

/// The movies of a take that its frames are drawn from. Moments of the camera and its matte are source
/// seconds less `cameraOffset`.
struct TakeMovies {
    /// The recording's, in pixels.
    int naturalWidth = 0;
    int naturalHeight = 0;
    HeldFrameReader recording;
    std::optional<HeldFrameReader> camera;
    /// Only where the camera's background is blurred.
    std::optional<HeldFrameReader> matte;
    double cameraOffset = 0;

    /// Opens them for a range of source seconds, or all of them. No camera where `webcam` is absent or off,
    /// or the take has none. Throws Exporter::Failure, and MediaError for a movie that can't be opened.
    static TakeMovies open(const TakeBundle& bundle, const std::optional<WebcamConfig>& webcam,
                           const std::optional<TimeSegment>& range);
};

}  // namespace tessaloom
