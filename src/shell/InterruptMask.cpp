// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InterruptMask.h"

namespace tessaloom {

sigset_t InterruptMask::interrupts() {
    sigset_t signals{};
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    return signals;
}

InterruptMask::InterruptMask() {
    const sigset_t signals = interrupts();
    pthread_sigmask(SIG_BLOCK, &signals, &previous_);
}

InterruptMask::~InterruptMask() {
    pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
}

}  // namespace tessaloom
