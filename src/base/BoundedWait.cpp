// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/BoundedWait.h"

#include <QCoroFuture>
#include <QFutureWatcher>
#include <QPromise>
#include <memory>
#include <thread>
#include <utility>

namespace tessaloom {

QCoro::Task<bool> waitBounded(QFuture<void> future, std::chrono::milliseconds limit, WaitClock& clock,
                              std::stop_token cancel) {
    if (future.isFinished()) co_return true;
    QPromise<void> over;
    over.start();
    const auto end = [&over] { over.finish(); };
    QFutureWatcher<void> work;
    QFutureWatcher<void> time;
    QObject::connect(&work, &QFutureWatcher<void>::finished, end);
    QObject::connect(&time, &QFutureWatcher<void>::finished, end);
    work.setFuture(future);
    time.setFuture(clock.after(limit));
    const std::stop_callback release(cancel, end);
    co_await over.future();
    co_return future.isFinished();
}

QCoro::Task<bool> runBounded(std::function<void()> work, std::chrono::milliseconds limit, WaitClock& clock) {
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    const QFuture<void> future = promise->future();
    std::thread worker([work = std::move(work), promise]() mutable {
        std::exchange(work, nullptr)();  // what it owned is gone before the waiter goes on
        promise->finish();
    });
    const bool finished = co_await waitBounded(future, limit, clock);
    // Only a thread that is left alone may still be on its way out when the program ends.
    if (finished) {
        worker.join();
    } else {
        worker.detach();
    }
    co_return finished;
}

}  // namespace tessaloom
