// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

#include "capture/ScreenStream.h"
#include "media/MovieWriter.h"
#include "media/YuvImage.h"

namespace tessaloom {

/// The recording's "screen.mov": holds the picture as it stands, applies changes to it and encodes it when it
/// has changed. A thread of its own flushes the file at least once a second.
class ScreenMovie {
  public:
    ScreenMovie(std::unique_ptr<MovieWriter> writer, int width, int height);
    ~ScreenMovie();
    ScreenMovie(const ScreenMovie&) = delete;
    ScreenMovie& operator=(const ScreenMovie&) = delete;

    /// Encodes the changed picture at `time`, in seconds since the first frame. Throws MediaError, for ever
    /// after once the file could not be written.
    void append(std::span<const ScreenPatch> patches, double time);

    /// Completes the file so that its last frame lasts until `endTime`. Throws MediaError.
    void finish(double endTime);

  private:
    void encode(double time);
    void flushRegularly(const std::stop_token& stop);

    std::mutex lock_;
    std::unique_ptr<MovieWriter> writer_;
    YuvImage picture_;
    double lastTime_ = -1;
    std::condition_variable_any wakeUp_;
    std::jthread flusher_;
};

}  // namespace tessaloom
