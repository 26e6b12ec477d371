// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <QFuture>
#include <chrono>
#include <functional>
#include <stop_token>

#include "base/WaitClock.h"

namespace tessaloom {

/// Suspends until the future is finished, but not longer than `limit` on `clock`, nor past a stop asked for
/// through `cancel`, from any thread. True when it was finished.
QCoro::Task<bool> waitBounded(QFuture<void> future, std::chrono::milliseconds limit,
                              WaitClock& clock = WaitClock::host(), std::stop_token cancel = {});

/// Runs `work`, which must not throw, on a thread of its own and suspends until it is done, but not longer
/// than `limit`. After a time-out (false) the thread goes on by itself, so `work` must own what it uses.
/// Give `work` a name before awaiting: GCC 12 destroys a closure made inside an await expression twice.
QCoro::Task<bool> runBounded(std::function<void()> work, std::chrono::milliseconds limit,
                             WaitClock& clock = WaitClock::host());

}  // namespace tessaloom
