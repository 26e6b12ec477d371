// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/x11/X11Connection.h"

namespace tessaloom {

/// As long as it lives, the connection waits for a server that hangs four seconds at most, all its waits
/// together: then it hangs up. The connection must outlive it.
class X11WaitLimit {
  public:
    explicit X11WaitLimit(const X11Connection& connection);

  private:
    void run(const std::stop_token& stop, const X11Connection& connection);

    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;
};

}  // namespace tessaloom
