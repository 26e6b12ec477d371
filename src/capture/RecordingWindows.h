// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CountdownPanel.h"

namespace tessaloom {

/// What a recording shows on the screen. A window that can't be made is logged and left out: a recording is
/// worth more than its windows. Main thread of a Qt application that has a screen.
class RecordingWindows {
  public:
    void showCountdown(int secondsLeft);
    void hideCountdown() { countdown_.hide(); }

  private:
    CountdownPanel countdown_;
};

}  // namespace tessaloom
