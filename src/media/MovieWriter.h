// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "media/AacEncoder.h"
#include "media/H264Encoder.h"
#include "media/PictureMotion.h"
#include "media/YuvImage.h"

namespace tessaloom {

/// Writes one movie or sound file. Used by one thread at a time; every operation throws MediaError with the
/// system's reason. A writer destroyed before finish() leaves the file as it then is.
class MovieWriter {
  public:
    enum class Container {
        /// A QuickTime movie in fragments: whatever was flushed stays playable if the process dies.
        fragmentedMovie,
        /// The same for an MPEG-4 file with sound alone.
        fragmentedSound,
        /// An MP4 file with its index in front; unreadable until finished.
        mp4,
    };

    struct Settings {
        Container container = Container::mp4;
        /// The tracks; at least one.
        std::optional<H264Settings> video = std::nullopt;
        std::optional<AacSettings> sound = std::nullopt;
    };

    /// Replaces the file at `path`.
    static std::unique_ptr<MovieWriter> create(const std::filesystem::path& path, const Settings& settings);
    ~MovieWriter();

    /// Appends a picture of the settings' size. `time` and `duration` are in seconds, times must ascend by at
    /// least a tick. A picture is shown until the next one begins; `duration` counts for the last one only.
    void appendVideo(const YuvImage& image, double time, double duration,
                     PictureMotion motion = PictureMotion::still);

    /// Appends interleaved samples, -1 to 1, behind those before. The first one's time is 0, in which
    /// whatever the encoder puts before it is not counted.
    void appendSound(std::span<const float> samples);

    /// Cuts a fragment here and hands everything appended so far to the operating system, less the sound
    /// still in its encoder (43 ms). Without anything new, before each track has begun, and for containers
    /// without fragments, there is nothing to do. A recording in progress calls this at least once a second;
    /// a fragment of 4 s is cut without being asked. True when there was something to do.
    bool flush();

    /// Completes and closes the file; nothing may be called afterwards.
    void finish();

  private:
    struct File;

    MovieWriter(const Settings& settings, std::unique_ptr<File> file);
    void openTracks();
    void writeVideo(AVPacket& packet);
    void writeSound(AVPacket& packet);
    void reachTime(double time);
    void cutFragment();

    Settings settings_;
    std::optional<H264Encoder> video_;
    std::optional<AacEncoder> sound_;
    std::unique_ptr<File> file_;
    std::int64_t lastDuration_ = 0;
    std::int64_t soundFrames_ = 0;  ///< samples of each channel appended so far
    std::optional<double> fragmentStart_;
    bool indexWritten_ = false;
};

}  // namespace tessaloom
