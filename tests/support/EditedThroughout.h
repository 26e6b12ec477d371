// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/EditParams.h"

namespace tessaloom {

/// An edit in which no value is its default.
inline EditParams editedThroughout() {
    EditParams edit;
    edit.version = 2;
    edit.trim = {1.5, 9.25};
    edit.aspect = AspectPreset::vertical;
    edit.crop = {0.1, 0.2, 0.3, 0.4};
    edit.background = {Background::Style::gradient, "#010203", "#0A0B0C"};
    edit.backgroundBlur = 0.5;
    edit.padding = 0.1;
    edit.cornerRadius = 1.0 / 3;
    edit.shadow = 1;
    edit.webcam = {true, WebcamConfig::Shape::rectangle, 0.4, {0.1, 0.9}, 0.02, "#FF0000", true, 0.75};
    edit.music = MusicPreset::cinematic;
    edit.musicVolume = 0.2;
    edit.micVolume = 0.9;
    edit.cursorVisible = false;
    edit.cursorScale = 2.5;
    edit.cursorSmoothing = 0.75;
    edit.cursorBounce = false;
    edit.cursorHideIdle = false;
    edit.clickSounds = true;
    edit.micEnhanced = true;
    edit.cursorStyle = CursorStyle::ring;
    edit.gifLoop = false;
    edit.removeSilences = true;
    edit.keptSegments = {{0, 1}, {3, 2}};
    edit.removeFillers = true;
    edit.fillerRanges = {{0.5, 0.75}};
    edit.showKeystrokes = false;
    edit.captions = {{1, 2, "Grüße, 世界", {{"Grüße,", 1, 1.5}, {"世界", 1.5, 2}}}, {3, 4, "", {}}};
    edit.showCaptions = true;
    edit.captionStyle = {1.5,       "#111111",          "#222222", 0.5, 0.25, CaptionHighlight::underline,
                         "#333333", CaptionPlate::none, true};
    edit.speed = 1.25;
    edit.splitPoints = {3, 1, 2};
    edit.removedRanges = {{4, 5}};
    edit.cameraHiddenRanges = {{6, 7}};
    edit.zoomKeyframes = {{Uuid::random(), 1, 2, {0.25, 0.25, 0.5, 0.5}, 0.1, 0.2}};
    return edit;
}

}  // namespace tessaloom
