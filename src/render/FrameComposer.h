// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <vector>

#include "core/Background.h"
#include "core/CaptionChip.h"
#include "core/CaptionStyle.h"
#include "core/CaptionTrack.h"
#include "core/Geometry.h"
#include "core/RelativeRect.h"
#include "core/WebcamConfig.h"
#include "motion/ClickEffects.h"
#include "motion/CursorTrack.h"
#include "motion/KeystrokeTrack.h"
#include "motion/ZoomTimeline.h"
#include "render/ContentGeometry.h"
#include "render/Uniforms.h"

namespace tessaloom {

/// The one place that decides what a moment of the recording looks like on a canvas. A plain value; pure, so
/// preview and export agree, and callable from any thread. Lengths that the user sets are points of the
/// captured area, so that a look scales with the canvas and the zoom.
struct FrameComposer {  // NOLINT(clang-analyzer-optin.performance.Padding): ordered by meaning
    /// What one frame shows. The chips' texts are views into the composer that made it, which must outlive it
    /// unchanged. Two equal frames of one composer look the same if their source pictures do.
    struct Frame {
        CompositeUniforms uniforms;
        std::optional<CursorUniforms> cursor;
        std::vector<RippleUniforms> ripples;
        std::optional<WebcamUniforms> webcam;
        std::optional<KeystrokeChip> keystroke;
        std::optional<CaptionChip> caption;
        /// The bubble's place at rest in canvas pixels, which captions avoid, also while it is off.
        std::optional<Rect> webcamKeepOut;

        bool operator==(const Frame&) const = default;
    };

    ZoomTimeline zoom;
    CursorTrack cursorTrack;
    ClickEffects clicks;
    RelativeRect crop;
    Background background;
    /// 0 to 1.
    double backgroundBlur = 0;
    /// Captured points.
    double padding = 0;
    double cornerRadius = 0;
    /// 0 to 1.
    double shadow = 0;
    /// Width over height of the recorded frame.
    double recordingAspect = 0;
    /// Width of the captured area in points.
    double capturePointWidth = 0;
    /// Points.
    Size cursorImageSize;
    Point cursorHotspot;
    bool cursorVisible = true;
    double cursorScale = 1;
    bool cursorBounce = true;
    bool cursorHideIdle = true;
    /// Absent when the recording has no camera.
    std::optional<WebcamConfig> webcamConfig;
    bool cameraInitiallyShown = true;
    /// Ascending source times at which the bubble flips on or off.
    std::vector<double> cameraTransitions;
    KeystrokeTrack keystrokes;
    bool keystrokesVisible = true;
    CaptionTrack captions;
    bool captionsVisible = false;
    CaptionStyle captionStyle;

    /// `time` in source seconds, the canvas in pixels. Never fails; allocates nothing but the ripple list.
    Frame composeFrame(double time, int canvasWidth, int canvasHeight) const&;
    Frame composeFrame(double time, int canvasWidth, int canvasHeight) && = delete;

    /// Opacity of the camera bubble, 0 to 1: a crossfade of 0.3 s centred on each transition.
    double webcamOpacity(double time) const;

    bool operator==(const FrameComposer&) const = default;
};

}  // namespace tessaloom
