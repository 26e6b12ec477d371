// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace tessaloom::demo {

/// Ticks sixty times a second on one grid, as a screen's refresh does: a tick that comes late delays none
/// after it, and of several that are overdue one is given.
class RefreshClock {
  public:
    /// Ticks on the thread that makes it, from its event loop. Throws std::system_error when the system has
    /// no timer left.
    explicit RefreshClock(std::function<void()> onTick);
    ~RefreshClock();
    RefreshClock(const RefreshClock&) = delete;
    RefreshClock& operator=(const RefreshClock&) = delete;

  private:
    int timer_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tessaloom::demo
