// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace tessaloom {

/// Calls `whenOver`, on a thread of its own, once it has lived for that long. Its end waits for a call under
/// way.
class TimeLimit {
  public:
    TimeLimit(std::chrono::milliseconds time, std::function<void()> whenOver);

  private:
    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;  ///< last, so that it ends before what it uses
};

}  // namespace tessaloom
