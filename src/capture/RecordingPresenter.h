// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <filesystem>
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
    /// What the speakers play can't be recorded, for the reason given. Nobody is asked about it.
    virtual void noteWithoutSystemAudio(const std::string&) {}
    /// The recording could not start, for the reason given; without the permission to record the screen that
    /// may be why.
    virtual QCoro::Task<> tellFailure(std::string reason, bool mayRecordScreen) = 0;

    /// The bar from which recordings are started, where there is one: off while an agent's recording runs,
    /// back when a user's start was given up.
    virtual void showRecordBar() {}
    virtual void hideRecordBar() {}

    /// A user's recording is finished.
    virtual void openEditor(const std::filesystem::path& bundle) = 0;
};

}  // namespace tessaloom
