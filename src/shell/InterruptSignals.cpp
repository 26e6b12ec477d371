// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InterruptSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace tessaloom {
InterruptSignals::InterruptSignals(std::function<void()> onInterrupt) {
    const sigset_t wanted = InterruptMask::interrupts();
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
}

}  // namespace tessaloom
