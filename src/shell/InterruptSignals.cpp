// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InterruptSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace tessaloom {
namespace {

sigset_t interrupts() {
    sigset_t signals{};
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGHUP);
    return signals;
}

}  // namespace

InterruptSignals::InterruptSignals(std::function<void()> onInterrupt) {
    const sigset_t wanted = interrupts();
    pthread_sigmask(SIG_BLOCK, &wanted, &previousMask_);
    signals_ = signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onInterrupt = std::move(onInterrupt)] {
                         signalfd_siginfo received{};
                         if (read(signals_, &received, sizeof received) == sizeof received) onInterrupt();
                     });
}

InterruptSignals::~InterruptSignals() {
    notifier_.reset();
    close(signals_);
    pthread_sigmask(SIG_SETMASK, &previousMask_, nullptr);
}

}  // namespace tessaloom
