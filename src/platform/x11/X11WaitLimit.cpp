// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11WaitLimit.h"

namespace tessaloom {

X11WaitLimit::X11WaitLimit(const X11Connection& connection)
    : thread_([this, &connection](const std::stop_token& stop) { run(stop, connection); }) {}

void X11WaitLimit::run(const std::stop_token& stop, const X11Connection& connection) {
    std::unique_lock guard(lock_);
    wakeUp_.wait_for(guard, stop, X11Connection::answerLimit, [] { return false; });
    if (!stop.stop_requested()) connection.hangUp();
}

}  // namespace tessaloom
