// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

#include "core/TakeBundle.h"

namespace tessaloom {

/// A made recording: a document, a pointer, clicks that make zooms.
struct BenchTake {
    int width = 1920;
    int height = 1080;
    double seconds = 10;
    /// Recorded pictures a second while the document scrolls, which it does every other second.
    double rate = 60;
    /// The document scrolls a little every five seconds instead, and the pointer rests but for a second.
    bool still = false;
    /// With a voice, and music under it. Needs the ffmpeg program.
    bool sound = false;
};

/// Made anew in this folder.
TakeBundle makeBenchTake(const BenchTake& wanted, const std::filesystem::path& folder);

}  // namespace tessaloom
