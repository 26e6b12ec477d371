// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QPromise>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "base/BackgroundWork.h"
#include "base/WaitClock.h"
#include "capture/PermissionsManager.h"
#include "capture/RecordingDevices.h"
#include "capture/RecordingPresenter.h"
#include "capture/WebcamRecorder.h"

namespace tessaloom {

/// The camera as it runs before a recording, with its picture shown. Opening and letting go of one take their
/// time: what was asked for last is what counts in the end. Main thread; must outlive the coroutines it
/// returns, and waits for cameras that are being let go.
class WarmCamera {
  public:
    /// All of them must outlive it.
    WarmCamera(RecordingDevices& devices, RecordingPresenter& presenter,
               const PermissionsManager& permissions, WaitClock& clock)
        : devices_(devices), presenter_(presenter), permissions_(permissions), clock_(clock) {}

    bool isOn() const { return camera_ != nullptr; }

    /// Nothing when there is one already. One that is still being opened for an earlier call is this one's
    /// too, which then returns at once. A camera that can't be opened is logged, and stays off.
    QCoro::Task<> turnOn(std::string identifier, CameraChoice choice);
    /// Also one that is still being opened. The device itself is let go in the background.
    void turnOff();
    /// Shows its picture anew, if it is on.
    void show(const CameraChoice& choice);

    /// Hands the camera over, its picture still shown, once one that is being opened has come; nothing when
    /// none is on.
    QCoro::Task<std::unique_ptr<WebcamRecorder>> take();

    /// Another camera, once those let go of before have ended. Throws CaptureError, and what the device
    /// throws.
    QCoro::Task<std::unique_ptr<WebcamRecorder>> open(std::string identifier);

    /// Suspends until those let go of have ended, each within the time that a camera may take for it.
    QCoro::Task<> untilLetGo();

  private:
    struct Wanted {
        std::string identifier;
        CameraChoice choice;
    };

    QCoro::Task<std::unique_ptr<WebcamRecorder>> openOrLog(std::string identifier);
    void letGo(std::unique_ptr<WebcamRecorder> camera);

    RecordingDevices& devices_;
    RecordingPresenter& presenter_;
    const PermissionsManager& permissions_;
    WaitClock& clock_;
    std::optional<Wanted> wanted_;           ///< as of the last call
    std::optional<QPromise<void>> opening_;  ///< while one is opened
    std::unique_ptr<WebcamRecorder> camera_;
    std::list<BackgroundWork> leaving_;
};

}  // namespace tessaloom
