// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/InterruptSignals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace tessaloom {
namespace {

constexpr std::chrono::milliseconds watchInterval{500};
constexpr int longestWait = 8;  ///< in intervals

}  // namespace

InterruptSignals::InterruptSignals(std::function<void()> onInterrupt, std::function<void()> onUnheeded) {
    const sigset_t wanted = InterruptMask::interrupts();
    signals_ = signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK);
    notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, onInterrupt = std::move(onInterrupt)] {
                         signalfd_siginfo received{};
                         if (read(signals_, &received, sizeof received) == sizeof received) onInterrupt();
                     });
    if (!onUnheeded) return;
    watch_.emplace(watchInterval, [this, onUnheeded = std::move(onUnheeded), waits = 0]() mutable {
        waits = isWaiting() ? waits + 1 : 0;
        if (waits == longestWait) onUnheeded();
        return waits < longestWait;
    });
}

/// One that was sent and not read yet.
bool InterruptSignals::isWaiting() const {
    pollfd descriptor{signals_, POLLIN, 0};
    return poll(&descriptor, 1, 0) == 1;
}

InterruptSignals::~InterruptSignals() {
    watch_.reset();
    notifier_.reset();
    close(signals_);
}

}  // namespace tessaloom
