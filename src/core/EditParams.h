// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/AspectPreset.h"
#include "core/Background.h"
#include "core/Caption.h"
#include "core/CaptionStyle.h"
#include "core/CursorStyle.h"
#include "core/MusicPreset.h"
#include "core/RelativeRect.h"
#include "core/TimeSegment.h"
#include "core/TrimRange.h"
#include "core/WebcamConfig.h"
#include "core/ZoomKeyframe.h"

namespace tessaloom {

/// The whole edit of one recording. All times are source seconds; lengths are points of the captured area.
struct EditParams {  // NOLINT(clang-analyzer-optin.performance.Padding): ordered by meaning
    std::int64_t version = 1;
    TrimRange trim;
    AspectPreset aspect = AspectPreset::native;
    /// What is shown of the frame.
    RelativeRect crop;
    Background background;
    /// 0 to 1.
    double backgroundBlur = 0;
    double padding = 40;
    double cornerRadius = 12;
    /// Strength, 0 to 1.
    double shadow = 0.35;
    WebcamConfig webcam;
    MusicPreset music = MusicPreset::none;
    double musicVolume = 0.7;
    double micVolume = 1.0;
    bool cursorVisible = true;
    double cursorScale = 1.0;
    /// 0 is raw, 1 the most smoothing.
    double cursorSmoothing = 0.3;
    bool cursorBounce = true;
    bool cursorHideIdle = true;
    bool clickSounds = false;
    /// Play the cleaned microphone track in place of the recorded one.
    bool micEnhanced = false;
    CursorStyle cursorStyle = CursorStyle::system;
    bool gifLoop = true;
    /// Keep only `keptSegments`, the stretches with speech.
    bool removeSilences = false;
    std::vector<TimeSegment> keptSegments;
    bool removeFillers = false;
    std::vector<TimeSegment> fillerRanges;
    bool showKeystrokes = true;
    std::vector<Caption> captions;
    bool showCaptions = false;
    CaptionStyle captionStyle;
    /// Playback rate of the output.
    double speed = 1.0;
    std::vector<double> splitPoints;
    std::vector<TimeSegment> removedRanges;
    std::vector<TimeSegment> cameraHiddenRanges;
    std::vector<ZoomKeyframe> zoomKeyframes;

    bool operator==(const EditParams&) const = default;
};

/// Reads the stored form key by key: a missing or unreadable value costs that value only and leaves its
/// default, a bad element of a list that element. Throws DecodeError when the text is no JSON object.
EditParams decodeEditParams(std::string_view json);

/// The stored form: JSON with sorted keys. Values that are no finite numbers are left out.
std::string encode(const EditParams& edit);

}  // namespace tessaloom
