// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "base/PeriodicTask.h"
#include "capture/ScreenStream.h"
#include "capture/SteadySound.h"
#include "media/MovieWriter.h"
#include "media/YuvImage.h"

namespace tessaloom {

/// A movie that is being recorded: holds the picture as it stands, applies changes to it and encodes it when
/// it has changed, and beside it sound, if the movie has such a track. Time 0 of the file is the first
/// picture. A thread of its own flushes the file at least once a second. All times are HostClock seconds. Any
/// thread.
class LiveMovie {
  public:
    using LogCategory = const QLoggingCategory& (*)();

    /// `settings` are those of the movie's tracks; what goes wrong between the calls is logged under
    /// `category`. Throws MediaError.
    LiveMovie(const std::filesystem::path& file, MovieWriter::Settings settings, LogCategory category);
    ~LiveMovie();
    LiveMovie(const LiveMovie&) = delete;
    LiveMovie& operator=(const LiveMovie&) = delete;

    /// Encodes the changed picture. Throws MediaError, for ever after once the file could not be written.
    void append(std::span<const ScreenPatch> patches, double time);

    /// Adds sound in the track's format. What belongs before the first picture is left out. Doesn't wait for
    /// a picture that is being encoded: whoever brings that one writes the sound too. Throws MediaError.
    void appendSound(const SoundChunk& chunk);

    /// Completes the file so that its last frame and its sound last until `endTime`. Throws MediaError.
    void finish(double endTime);

  private:
    /// Sound that nobody has written yet.
    struct WaitingSound {
        double hostTime = 0;
        std::vector<float> samples;
    };

    void writeSound();
    void begin(double time);
    void encode(double time);
    bool beginTracks();
    bool flushRegularly();
    bool flushTo(double hostTime);
    void flush();

    std::mutex waitingLock_;             ///< is held but for moments
    std::vector<WaitingSound> waiting_;  ///< from the oldest on
    std::mutex lock_;                    ///< guards what follows
    MovieWriter::Settings settings_;
    LogCategory category_;
    std::unique_ptr<MovieWriter> writer_;
    YuvImage picture_;
    std::optional<SteadySound> sound_;
    std::optional<double> origin_;
    double lastTime_ = 0;
    bool playable_ = false;
    // Last, so that they end before what they use.
    PeriodicTask starter_;  ///< until the file can be played
    PeriodicTask flusher_;
};

}  // namespace tessaloom
