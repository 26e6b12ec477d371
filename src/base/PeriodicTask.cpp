// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/PeriodicTask.h"

#include <utility>

namespace tessaloom {

PeriodicTask::PeriodicTask(std::chrono::milliseconds interval, std::function<bool()> work)
    : thread_([this, interval, work = std::move(work)](const std::stop_token& stopToken) {
          run(stopToken, interval, work);
      }) {}

void PeriodicTask::stop() {
    thread_.request_stop();
    if (thread_.joinable()) thread_.join();
}

void PeriodicTask::run(const std::stop_token& stop, std::chrono::milliseconds interval,
                       const std::function<bool()>& work) {
    std::unique_lock guard(lock_);
    for (bool more = true; more;) {
        wakeUp_.wait_for(guard, stop, interval, [] { return false; });
        more = !stop.stop_requested() && work();
    }
}

}  // namespace tessaloom
