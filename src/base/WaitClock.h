// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFuture>
#include <chrono>

namespace tessaloom {

/// The time that waits and their limits go by: the host's, or a test's own. Main thread.
class WaitClock {
  public:
    /// The host's. It needs an event loop.
    static WaitClock& host();

    virtual ~WaitClock() = default;

    /// Finished when so much time has passed.
    virtual QFuture<void> after(std::chrono::milliseconds time) = 0;
};

}  // namespace tessaloom
