// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <functional>
#include <stop_token>

#include "base/WaitClock.h"
#include "capture/CapturePlatform.h"
#include "capture/RecordingPresenter.h"

namespace tessaloom {

/// Warns the user before a recording begins. The space bar, whichever window has the focus, shortens the
/// warning; the recording starts all the same. Main thread; must outlive the coroutines it returns.
class CountdownController {
  public:
    CountdownController(CapturePlatform& platform, RecordingPresenter& presenter, WaitClock& clock)
        : platform_(platform), presenter_(presenter), clock_(clock) {}

    /// Returns when the countdown is over, skipped or given up, and off the screen. Below 1 nothing is shown.
    /// `hideMore`, if there is one, takes off the screen what else mustn't be in the picture.
    QCoro::Task<> run(int seconds, std::stop_token cancel, std::function<void()> hideMore = {});

  private:
    QCoro::Task<> count(int seconds, std::stop_token cancel);

    CapturePlatform& platform_;
    RecordingPresenter& presenter_;
    WaitClock& clock_;
};

}  // namespace tessaloom
