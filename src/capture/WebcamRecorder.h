// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>

#include "base/WaitClock.h"
#include "capture/CameraSource.h"

namespace tessaloom {

/// Records a camera into "webcam.mov". The camera runs from the moment this is made; it may run long before
/// the file begins, which then needs no new start of the camera. Main thread, except where told.
class WebcamRecorder {
  public:
    static std::unique_ptr<WebcamRecorder> start(std::unique_ptr<CameraSource> source);
    /// Without stop() the file stays as it then is.
    ~WebcamRecorder();

    /// The camera's next picture is the first of this file, which replaces any that is there. Called once.
    void startRecording(const std::filesystem::path& file);

    /// Each picture from now on goes there too, on the camera's own thread, until another call replaces it.
    void setPreview(CameraSource::Handler handler);

    /// HostClock seconds at which the file's first picture was taken; nothing before it. Any thread.
    std::optional<double> fileStartHostTime() const;

    /// Suspends until the file has begun or a stop is asked for through `cancel`, but not longer than
    /// `limit`, which is logged.
    QCoro::Task<> waitForFileStart(std::chrono::milliseconds limit, WaitClock& clock = WaitClock::host(),
                                   std::stop_token cancel = {});

    /// Ends the camera and completes the file, if there is one, waiting `finishLimit` of `clock` at most.
    QCoro::Task<> stop(WaitClock& clock = WaitClock::host());

    /// The same on the calling thread, any one, however long it takes.
    void finish();
    static constexpr std::chrono::seconds finishLimit{4};

  private:
    struct Recording;

    explicit WebcamRecorder(std::shared_ptr<Recording> recording);

    std::shared_ptr<Recording> recording_;
};

}  // namespace tessaloom
