// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "media/DecodedFrame.h"

namespace tessaloom {

/// Decodes a movie's first video track from front to back. A file that was cut off reads up to its torn end;
/// damaged pictures are left out. Used by one thread at a time.
class MovieReader {
  public:
    /// Seconds of the movie's timeline.
    struct TimeRange {
        double start = 0;
        double end = 0;
    };

    /// With a range, reading begins at the key frame at or before its start, so that the picture in force
    /// there is among the first, and ends with the last picture before its end. Throws NoVideoTrack, and
    /// UnreadableMovie with the system's reason when the file can't be opened.
    static std::unique_ptr<MovieReader> open(const std::filesystem::path& path,
                                             std::optional<TimeRange> range = std::nullopt);
    ~MovieReader();

    /// The pictures' size as they are shown.
    int naturalWidth() const;
    int naturalHeight() const;

    /// The next picture in order of time; nothing at the end. Throws UnreadableMovie with the system's reason
    /// when that comes from a disk that fails.
    std::optional<DecodedFrame> next();

    /// Like next, but leaves out pictures that are over by `time`, as far as the file can be sought in: the
    /// picture in force there is never left out, and some may come once more.
    std::optional<DecodedFrame> skipTo(double time);

    /// The end of the first video track's last packet in seconds, 0 when it has none. Reads the file without
    /// decoding. Throws like open.
    static double scanDuration(const std::filesystem::path& path);

  private:
    struct Source;

    explicit MovieReader(std::unique_ptr<Source> source);
    static bool seekKeyFrame(Source& source, double time);

    std::unique_ptr<Source> source_;
    bool ended_ = false;
};

}  // namespace tessaloom
