// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InterruptSignals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tessaloom {
namespace {

constexpr std::chrono::milliseconds watchInterval{500};
constexpr int longestBlock = 8;  ///< in intervals

}  // namespace

InterruptSignals::InterruptSignals(std::function<void()> onInterrupt, std::function<void()> onBlocked) {
    const sigset_t wanted = InterruptMask::interrupts();
    signals_ = signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onInterrupt = std::move(onInterrupt)] {
                         signalfd_siginfo received{};
                         if (read(signals_, &received, sizeof received) != sizeof received) return;
                         interrupted_ = true;
                         onInterrupt();
                     });
    if (!onBlocked) return;
    watch_.emplace(watchInterval, [this, onBlocked = std::move(onBlocked), blocked = 0]() mutable {
        blocked = answered_.exchange(false) ? 0 : blocked + 1;
        QMetaObject::invokeMethod(
            notifier_.get(), [this] { answered_ = true; }, Qt::QueuedConnection);
        const bool givesUp = blocked >= longestBlock && wasInterrupted();
        if (givesUp) onBlocked();
        return !givesUp;
    });
}

/// Also when the main thread hasn't come to read the signal yet.
bool InterruptSignals::wasInterrupted() const {
    pollfd descriptor{signals_, POLLIN, 0};
    return interrupted_ || poll(&descriptor, 1, 0) == 1;
}

InterruptSignals::~InterruptSignals() {
    watch_.reset();
    notifier_.reset();
    close(signals_);
}

}  // namespace tessaloom
