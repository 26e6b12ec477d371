// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <stop_token>

#include "capture/CapturePlatform.h"
#include "capture/RecordingPresenter.h"

namespace tessaloom {

/// Warns the user before a recording begins. The space bar, whichever window has the focus, shortens the
/// warning; the recording starts all the same. Main thread; must outlive the coroutines it returns.
class CountdownController {
  public:
    CountdownController(CapturePlatform& platform, RecordingPresenter& presenter)
        : platform_(platform), presenter_(presenter) {}

    /// Returns when the countdown is over, skipped or given up, and off the screen. Below 1 nothing is shown.
    QCoro::Task<> run(int seconds, std::stop_token cancel);

  private:
    CapturePlatform& platform_;
    RecordingPresenter& presenter_;
};

}  // namespace tessaloom
