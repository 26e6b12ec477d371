// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/BoundedWait.h"

#include <QCoroSignal>
#include <QFutureWatcher>
#include <QPromise>
#include <memory>
#include <thread>
#include <utility>

namespace tessaloom {

QCoro::Task<bool> waitBounded(QFuture<void> future, std::chrono::milliseconds limit) {
    if (future.isFinished()) co_return true;
    QFutureWatcher<void> watcher;
    watcher.setFuture(future);
    const auto finished = co_await qCoro(&watcher, &QFutureWatcher<void>::finished, limit);
    co_return finished.has_value();
}

QCoro::Task<bool> runBounded(std::function<void()> work, std::chrono::milliseconds limit) {
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    const QFuture<void> future = promise->future();
    std::thread worker([work = std::move(work), promise]() mutable {
        std::exchange(work, nullptr)();  // what it owned is gone before the waiter goes on
        promise->finish();
    });
    const bool finished = co_await waitBounded(future, limit);
    // Only a thread that is left alone may still be on its way out when the program ends.
    if (finished) {
        worker.join();
    } else {
        worker.detach();
    }
    co_return finished;
}

}  // namespace tessaloom
