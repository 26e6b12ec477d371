// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/RefreshClock.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace tessaloom::demo {
namespace {

constexpr long refreshNanoseconds = 1'000'000'000 / 60;

}  // namespace

RefreshClock::RefreshClock(std::function<void()> onTick)
    : timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (timer_ < 0) throw std::system_error(errno, std::generic_category(), "no timer for the refresh");
    const itimerspec interval{.it_interval = {0, refreshNanoseconds}, .it_value = {0, refreshNanoseconds}};
    timerfd_settime(timer_, 0, &interval, nullptr);
    notifier_ = std::make_unique<QSocketNotifier>(timer_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, onTick = std::move(onTick)] {
        std::uint64_t overdue = 0;
        if (read(timer_, &overdue, sizeof overdue) == sizeof overdue) onTick();
    });
}

RefreshClock::~RefreshClock() {
    notifier_.reset();
    close(timer_);
}

}  // namespace tessaloom::demo
