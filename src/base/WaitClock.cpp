// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/WaitClock.h"

#include <QPromise>
#include <QTimer>
#include <memory>

namespace tessaloom {
namespace {

class HostWaitClock final : public WaitClock {
  public:
    QFuture<void> after(std::chrono::milliseconds time) override {
        const auto promise = std::make_shared<QPromise<void>>();
        promise->start();
        QTimer::singleShot(time, Qt::PreciseTimer, [promise] { promise->finish(); });
        return promise->future();
    }
};

}  // namespace

WaitClock& WaitClock::host() {
    static HostWaitClock clock;
    return clock;
}

}  // namespace tessaloom
