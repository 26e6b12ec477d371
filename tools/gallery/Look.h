// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "core/EditParams.h"
#include "core/EventLog.h"

namespace tessaloom::gallery {

/// One of the things that the program can do to a recording, at a moment when it is to be seen.
struct Look {
    /// As "camera-circle": a file's name without its extension.
    std::string name;
    EditParams edit;
    /// Source seconds.
    double time = 0;
    /// Canvas width over height.
    double aspect = 16.0 / 9;
};

/// In pixels.
struct CanvasExtent {
    int width = 0;
    int height = 0;
};

/// The canvas of a look whose longer side is this many pixels.
CanvasExtent canvasOf(const Look& look, int longSide);

/// What the user of the made-up recording did: went to "Save" and clicked it, rested, and pressed Ctrl+S.
EventLog sampleLog();

/// Where the recording's wallpaper lies in its bundle.
inline constexpr const char* wallpaperFile = "wallpaper.png";

std::vector<Look> allLooks();

}  // namespace tessaloom::gallery
