// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>

#include "export/BoundedQueue.h"
#include "export/HeldFrameReader.h"
#include "media/BgraImage.h"
#include "render/Renderer.h"

namespace tessaloom {

/// One movie between the thread that decodes it and the one that draws from it. Each picture is converted
/// once, and its buffer comes back.
class SourceTrack {
  public:
    /// Without a reader it never has a picture. There are `pictureCount` pictures in all, 2 or more: the one
    /// that is shown, and those on the way to it.
    SourceTrack(HeldFrameReader* reader, std::size_t pictureCount);

    // For the decoding thread.

    /// Advances to `time` in the movie's own seconds, which must not descend, and fills `picture` if another
    /// one than before is in force there. False once the track was closed or `stop` requested.
    bool read(double time, std::unique_ptr<BgraImage>& picture, const std::stop_token& stop);
    /// True when the time read last has a picture.
    bool hasBegun() const { return readTime_.has_value(); }

    // For the drawing thread.

    /// Makes this the shown picture and returns true; null changes nothing.
    bool show(std::unique_ptr<BgraImage> picture);
    /// Empty until something was shown; valid until something else is.
    SourcePicture shown() const;

    /// From any thread: lets a reader that waits for a buffer end.
    void close() { free_.close(); }

  private:
    HeldFrameReader* reader_;
    std::optional<double> readTime_;
    BoundedQueue<std::unique_ptr<BgraImage>> free_;
    std::unique_ptr<BgraImage> shown_ = std::make_unique<BgraImage>();
    std::uint64_t identity_ = 0;
};

}  // namespace tessaloom
