// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "core/FileDescriptor.h"
#include "media/LzwEncoder.h"
#include "media/PixelRect.h"

namespace tessaloom {

/// A GIF89a file that grows by one frame after another. Used by one thread at a time. Throws
/// std::system_error; a file that isn't finished is no valid one.
class GifFile {
  public:
    /// One frame: it replaces the pixels of `area`, but for those with the index `transparent`, and leaves
    /// its picture standing for the next one.
    struct Frame {
        PixelRect area;
        /// Hundredths of a second.
        int delay = 0;
        /// The area's pixels row by row, indices into `palette`.
        std::span<const IndexedPixel> pixels;
        /// Red, green and blue in the bytes of 0xRRGGBB; at most 256.
        std::span<const std::uint32_t> palette;
        std::uint8_t transparent = 0;
    };

    /// Replaces the file at `path`. One that doesn't loop says nothing of repetition, one that loops repeats
    /// for ever.
    static GifFile create(const std::filesystem::path& path, bool loops);

    /// The first frame fills the file's picture, whose sides are at most 65535 pixels, and the others lie
    /// within it. Frames with the first one's palette cost no bytes for theirs.
    void append(const Frame& frame);

    /// Completes the file; nothing may be called afterwards. There has been a frame.
    void finish();

  private:
    GifFile(FileDescriptor file, bool loops);

    void writeHeader(const Frame& first);
    void writeOut();

    FileDescriptor file_;
    bool loops_;
    std::vector<std::uint32_t> globalPalette_;
    LzwEncoder encoder_;
    std::string pending_;
};

}  // namespace tessaloom
