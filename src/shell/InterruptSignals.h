// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "shell/InterruptMask.h"

namespace tessaloom {

/// While it lives, Ctrl-C (SIGINT), SIGTERM and SIGHUP call a function on the main thread instead of ending
/// the program. Make it before any other thread is started, since threads inherit what is blocked.
class InterruptSignals {
  public:
    explicit InterruptSignals(std::function<void()> onInterrupt);
    ~InterruptSignals();
    InterruptSignals(const InterruptSignals&) = delete;
    InterruptSignals& operator=(const InterruptSignals&) = delete;

  private:
    InterruptMask mask_;
    int signals_ = -1;  ///< file descriptor, closed at the end
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace tessaloom
