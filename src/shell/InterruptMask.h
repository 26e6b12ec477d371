// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>

namespace tessaloom {

/// While it lives, neither the thread that made it nor the threads started by that one receive Ctrl-C
/// (SIGINT), SIGTERM and SIGHUP.
class InterruptMask {
  public:
    static sigset_t interrupts();

    InterruptMask();
    ~InterruptMask();
    InterruptMask(const InterruptMask&) = delete;
    InterruptMask& operator=(const InterruptMask&) = delete;

  private:
    sigset_t previous_{};
};

}  // namespace tessaloom
