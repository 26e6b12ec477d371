// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/AspectPreset.h"
#include "core/Background.h"
#include "core/CaptionStyle.h"
#include "core/CursorStyle.h"
#include "core/EditParams.h"
#include "core/MusicPreset.h"
#include "core/Uuid.h"
#include "core/WebcamConfig.h"

namespace tessaloom {

/// A whole look under a name, to be put on other recordings and handed to other people: all that an edit says
/// about the look and nothing that it says about its recording. Units as in EditParams; the defaults are a
/// fresh edit's.
struct StylePreset {  // NOLINT(clang-analyzer-optin.performance.Padding): ordered by meaning
    Uuid id = Uuid::random();
    std::string name;
    AspectPreset aspect = AspectPreset::native;
    Background background;
    double backgroundBlur = 0;
    double padding = 40;
    double cornerRadius = 12;
    double shadow = 0.35;
    bool cursorVisible = true;
    CursorStyle cursorStyle = CursorStyle::system;
    double cursorScale = 1.0;
    double cursorSmoothing = 0.3;
    bool cursorBounce = true;
    bool keystrokesVisible = true;
    bool showCaptions = false;
    CaptionStyle captionStyle;
    MusicPreset music = MusicPreset::none;
    double musicVolume = 0.7;
    double micVolume = 1.0;
    /// Its `enabled` goes along, also to a recording without a camera, where it has no effect.
    WebcamConfig webcam;

    bool operator==(const StylePreset&) const = default;
};

/// The edit's look under `name` and a fresh identity.
StylePreset capturePreset(std::string name, const EditParams& edit);

/// Gives the edit the preset's look; its times, cuts, zooms, captions and all else stay.
void applyPreset(const StylePreset& preset, EditParams& edit);

/// Adds each in turn: it replaces the first preset whose name differs at most in case, in its place and under
/// its identity, and otherwise goes to the end.
void savePresets(std::vector<StylePreset> added, std::vector<StylePreset>& presets);

/// Removes each preset with this identity.
void deletePreset(const Uuid& id, std::vector<StylePreset>& presets);

/// Reads the stored form, which is also that of an exported file: a JSON array of objects. Each value is read
/// as tolerantly as in an edit, an unreadable identity becomes a fresh one. Throws DecodeError when the text
/// is anything else than such an array.
std::vector<StylePreset> decodeStylePresets(std::string_view json);

/// The stored form on one line. Values that are no finite numbers are left out.
std::string encode(const std::vector<StylePreset>& presets);

}  // namespace tessaloom
