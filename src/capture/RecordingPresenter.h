// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <string>

#include "capture/WebcamRecorder.h"
#include "motion/FirstEdit.h"

namespace tessaloom {

/// What a recording shows to its user: windows in the application, lines on a terminal for the command line.
/// Main thread only.
class RecordingPresenter {
  public:
    virtual ~RecordingPresenter() = default;

    /// Once a second before the recording starts, from its full length down to 1.
    virtual void showCountdown(int secondsLeft) = 0;
    /// The countdown must be off the screen when this returns.
    virtual void hideCountdown() = 0;

    /// The camera runs, as it will be seen. Until hideCamera(), which comes before the camera ends.
    virtual void showCamera(WebcamRecorder& camera, const CameraChoice& choice) = 0;
    virtual void hideCamera() = 0;

    /// The icons on the desktop are not to be in the picture.
    virtual void hideDesktopIcons() = 0;
    virtual void restoreDesktopIcons() = 0;

    /// The microphone can't be recorded, for the reason given. True to record without it, false to give up.
    virtual QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) = 0;
    /// The camera can't be recorded, for the reason given; the recording goes on when this returns.
    virtual QCoro::Task<> tellWithoutCamera(std::string reason) = 0;
};

}  // namespace tessaloom
