// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "media/BgraImage.h"
#include "media/PixelRect.h"

namespace tessaloom::test {

/// What a GIF says of itself, read byte by byte without our writer.
struct GifFacts {
    struct Frame {
        PixelRect area;
        /// Hundredths of a second.
        int delay = 0;
        bool hasOwnPalette = false;
    };

    int width = 0;
    int height = 0;
    /// 0 is for ever; absent when the file says nothing.
    std::optional<int> loopCount;
    std::vector<Frame> frames;

    std::vector<int> delays() const;
};

/// Throws std::runtime_error for a file that is no whole GIF.
GifFacts probeGif(const std::filesystem::path& path);

/// What a viewer shows, frame after frame, decoded by FFmpeg. Throws std::runtime_error.
std::vector<BgraImage> shownPictures(const std::filesystem::path& gif);

}  // namespace tessaloom::test
