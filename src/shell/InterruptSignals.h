// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>

#include "base/PeriodicTask.h"
#include "shell/InterruptMask.h"

namespace tessaloom {

/// While it lives, Ctrl-C (SIGINT), SIGTERM and SIGHUP call a function on the main thread instead of ending
/// the program. Make it before any other thread is started, since threads inherit what is blocked.
///
/// `onUnheeded`, if given, is called once, on another thread, when the main one hasn't come to do so within
/// four seconds.
class InterruptSignals {
  public:
    explicit InterruptSignals(std::function<void()> onInterrupt, std::function<void()> onUnheeded = {});
    ~InterruptSignals();
    InterruptSignals(const InterruptSignals&) = delete;
    InterruptSignals& operator=(const InterruptSignals&) = delete;

  private:
    bool isWaiting() const;

    InterruptMask mask_;
    int signals_ = -1;  ///< file descriptor, closed at the end
    std::unique_ptr<QSocketNotifier> notifier_;
    std::optional<PeriodicTask> watch_;
};

}  // namespace tessaloom
