// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QPromise>
#include <algorithm>
#include <chrono>
#include <functional>
#include <list>
#include <thread>

#include "base/WaitClock.h"

namespace tessaloom::test {

/// Time passes only when a test says so; events run meanwhile, and other threads' work takes as long as it
/// does.
class ManualWaitClock final : public WaitClock {
  public:
    QFuture<void> after(std::chrono::milliseconds time) override {
        Alarm& alarm = alarms_.emplace_back(now_ + time, time, QPromise<void>());
        alarm.promise.start();
        return alarm.promise.future();
    }

    void advance(std::chrono::milliseconds time) {
        now_ += time;
        for (auto alarm = alarms_.begin(); alarm != alarms_.end();) {
            if (alarm->due <= now_) {
                alarm->promise.finish();
                alarm = alarms_.erase(alarm);
            } else {
                ++alarm;
            }
        }
        QCoreApplication::processEvents();
    }

    bool somebodyWaits(std::chrono::milliseconds time) const {
        return std::ranges::find(alarms_, time, &Alarm::asked) != alarms_.end();
    }
    /// Runs events until somebody waits for just this long. False when ten real seconds bring nobody.
    bool runUntilSomebodyWaits(std::chrono::milliseconds time) const {
        return runUntil([&] { return somebodyWaits(time); });
    }
    static bool runUntil(const std::function<bool()>& condition) {
        for (int round = 0; round < 5000 && !condition(); ++round) {
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return condition();
    }

  private:
    struct Alarm {
        Alarm(std::chrono::milliseconds dueTime, std::chrono::milliseconds askedTime, QPromise<void> made)
            : due(dueTime), asked(askedTime), promise(std::move(made)) {}

        std::chrono::milliseconds due;
        std::chrono::milliseconds asked;
        QPromise<void> promise;
    };

    std::chrono::milliseconds now_{0};
    std::list<Alarm> alarms_;
};

}  // namespace tessaloom::test
