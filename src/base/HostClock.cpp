// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/HostClock.h"

#include <time.h>

#include <cmath>

namespace tessaloom::HostClock {

std::uint64_t nanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

double seconds() {
    return static_cast<double>(nanoseconds()) * 1e-9;
}

double fromServerMilliseconds(std::uint32_t serverTime, double receivedAtSeconds) {
    const auto receivedMilliseconds = static_cast<std::uint64_t>(receivedAtSeconds * 1000.0);
    // The signed 32-bit difference unwraps the counter whichever side of the wrap the two lie on.
    const auto difference =
        static_cast<std::int32_t>(serverTime - static_cast<std::uint32_t>(receivedMilliseconds));
    const double unwrapped = (static_cast<double>(receivedMilliseconds) + difference) / 1000.0;
    return std::abs(unwrapped - receivedAtSeconds) > 1.0 ? receivedAtSeconds : unwrapped;
}

}  // namespace tessaloom::HostClock
