// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/BackgroundWork.h"

#include <QPromise>
#include <memory>
#include <utility>

namespace tessaloom {

BackgroundWork::BackgroundWork(std::function<void()> work, std::chrono::milliseconds longestWait)
    : longestWait_(longestWait) {
    const auto promise = std::make_shared<QPromise<void>>();
    promise->start();
    future_ = promise->future();
    std::promise<void> end;
    ended_ = end.get_future();
    thread_ = std::thread([work = std::move(work), promise, end = std::move(end)]() mutable {
        std::exchange(work, nullptr)();  // what it owned is gone before anybody goes on
        promise->finish();
        end.set_value();
    });
}

BackgroundWork::~BackgroundWork() {
    if (ended_.wait_for(longestWait_) == std::future_status::ready) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

}  // namespace tessaloom
