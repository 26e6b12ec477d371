// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/TimeLimit.h"

#include <utility>

namespace tessaloom {

TimeLimit::TimeLimit(std::chrono::milliseconds time, std::function<void()> whenOver)
    : thread_([this, time, whenOver = std::move(whenOver)](const std::stop_token& stop) {
          std::unique_lock guard(lock_);
          wakeUp_.wait_for(guard, stop, time, [] { return false; });
          if (!stop.stop_requested()) whenOver();
      }) {}

}  // namespace tessaloom
