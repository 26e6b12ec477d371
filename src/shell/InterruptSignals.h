// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "base/PeriodicTask.h"
#include "shell/InterruptMask.h"

namespace tessaloom {

/// While it lives, Ctrl-C (SIGINT), SIGTERM and SIGHUP call a function on the main thread instead of ending
/// the program. Make it before any other thread is started, since threads inherit what is blocked.
///
/// `onBlocked`, if given, is called once, on another thread, when the main one, though interrupted, hasn't
/// come to its events for four seconds.
class InterruptSignals {
  public:
    explicit InterruptSignals(std::function<void()> onInterrupt, std::function<void()> onBlocked = {});
    ~InterruptSignals();
    InterruptSignals(const InterruptSignals&) = delete;
    InterruptSignals& operator=(const InterruptSignals&) = delete;

  private:
    bool wasInterrupted() const;

    InterruptMask mask_;
    int signals_ = -1;  ///< file descriptor, closed at the end
    std::unique_ptr<QSocketNotifier> notifier_;
    std::atomic<bool> interrupted_ = false;
    std::atomic<bool> answered_ = true;  ///< the main thread has come to its events since last asked
    std::optional<PeriodicTask> watch_;
};

}  // namespace tessaloom
