// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

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
};

}  // namespace tessaloom
