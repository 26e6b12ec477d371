// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaloom {

/// Does something again and again on a thread of its own, first when one interval has passed.
class PeriodicTask {
  public:
    /// Goes on until `work`, which must not throw, answers false.
    PeriodicTask(std::chrono::milliseconds interval, std::function<bool()> work);

    /// `work` doesn't run after it returns. Not from `work` itself.
    void stop();

  private:
    void run(const std::stop_token& stop, std::chrono::milliseconds interval,
             const std::function<bool()>& work);

    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;
};

}  // namespace tessaloom
