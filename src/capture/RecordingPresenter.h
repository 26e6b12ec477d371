// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <string>

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

    /// The microphone can't be recorded, for the reason given. True to record without it, false to give up.
    virtual QCoro::Task<bool> confirmWithoutMicrophone(std::string reason) = 0;
    /// The camera can't be recorded, for the reason given; the recording goes on when this returns.
    virtual QCoro::Task<> tellWithoutCamera(std::string reason) = 0;
};

}  // namespace tessaloom
