// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "media/AacEncoder.h"
#include "media/H264Encoder.h"
#include "media/StereoSample.h"
#include "media/YuvImage.h"

namespace tessaloom {

/// Writes one movie file. Used by one thread at a time; every operation throws MediaError with the system's
/// reason. A writer destroyed before finish() leaves the file as it then is.
class MovieWriter {
  public:
    enum class Container {
        /// A QuickTime movie in fragments: whatever was flushed stays playable if the process dies.
        fragmentedMovie,
        /// An MP4 file with its index in front; unreadable until finished.
        mp4,
    };

    struct Settings {
        Container container = Container::mp4;
        H264Settings video;
        /// A sound track beside the pictures; in an MP4 file only.
        bool sound = false;
    };

    /// Replaces the file at `path`.
    static std::unique_ptr<MovieWriter> create(const std::filesystem::path& path, const Settings& settings);
    ~MovieWriter();

    /// Appends a picture of the settings' size. `time` and `duration` are in seconds, times must ascend by at
    /// least a tick. A picture is shown until the next one begins; `duration` counts for the last one only.
    void appendVideo(const YuvImage& image, double time, double duration);

    /// Appends the sound that follows the last call's; the first begins at time 0. Where pictures and sound
    /// come at about the same pace, little has to be kept in memory.
    void appendSound(std::span<const StereoSample> sound);

    /// Cuts a fragment here and hands everything appended so far to the operating system. Without new
    /// pictures, and for containers without fragments, there is nothing to do. A recording in progress
    /// calls this at least once a second; a fragment of 4 s is cut without being asked.
    void flush();

    /// Completes and closes the file; nothing may be called afterwards.
    void finish();

  private:
    struct File;

    MovieWriter(const Settings& settings, std::unique_ptr<File> file);
    void writePicture(AVPacket& packet);
    void writeSound(AVPacket& packet);
    void writePacket(AVPacket& packet);
    void beginFragment(double time);
    void cutFragment();

    Settings settings_;
    H264Encoder encoder_;
    std::optional<AacEncoder> soundEncoder_;
    std::unique_ptr<File> file_;
    std::int64_t lastDuration_ = 0;
    std::optional<double> fragmentStart_;
    bool indexWritten_ = false;
};

}  // namespace tessaloom
