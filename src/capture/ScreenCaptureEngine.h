// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>

#include "base/WaitClock.h"
#include "capture/CapturePlatform.h"
#include "capture/CaptureTarget.h"
#include "capture/LiveSoundSource.h"
#include "core/CaptureRect.h"

namespace tessaloom {

/// What a stream has to deliver for a target. The picture has even sides, which the encoder needs: an odd row
/// or column at its end is left out. Throws CaptureError::noDisplay for a target without extent.
StreamConfiguration streamConfiguration(const CaptureTarget& target);

/// Records one screen stream, with what the speakers play beside it, into a movie file and defines the
/// recording's time zero: the host time of the first complete frame. Serves one recording. Main thread,
/// except where told.
class ScreenCaptureEngine {
  public:
    /// The stream or its file ended by themselves, for the reason given. Called on another thread, at most
    /// once.
    using StoppedHandler = std::function<void(const std::string& reason)>;

    /// With `systemAudio` the movie has a second track, as long as the first. Throws CaptureError, MediaError
    /// or std::runtime_error when the file or the stream can't be opened.
    static std::unique_ptr<ScreenCaptureEngine> start(CapturePlatform& platform, const CaptureTarget& target,
                                                      std::unique_ptr<LiveSoundSource> systemAudio,
                                                      const std::filesystem::path& file,
                                                      StoppedHandler onStopped);

    /// Suspends until the first frame, the stream's end, a stop asked for through `cancel`, or the limit.
    QCoro::Task<> waitForOrigin(std::chrono::milliseconds limit, WaitClock& clock = WaitClock::host(),
                                std::stop_token cancel = {});

    /// A first frame has come.
    bool started() const;
    /// HostClock seconds of the first frame, 0 before it.
    double timelineOrigin() const;
    const CaptureRect& captureRect() const;

    /// Ends the stream and completes the file, waiting 20 s of `clock` at most. A file without any frame is
    /// removed.
    QCoro::Task<> stop(WaitClock& clock = WaitClock::host());

  private:
    struct Recording;

    explicit ScreenCaptureEngine(std::shared_ptr<Recording> recording) : recording_(std::move(recording)) {}

    std::shared_ptr<Recording> recording_;
};

}  // namespace tessaloom
