// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// The one clock that every source of a recording is measured on: CLOCK_MONOTONIC, which X11 event times and
/// PipeWire buffers share. Callable from any thread.
namespace tessaloom::HostClock {

std::uint64_t nanoseconds();
double seconds();

/// A 32-bit X server time in milliseconds put back on this clock, in seconds. The server's counter wraps
/// every 49.7 days; a result more than a second away from `receivedAtSeconds` belongs to some other clock and
/// is replaced by it.
double fromServerMilliseconds(std::uint32_t serverTime, double receivedAtSeconds);

}  // namespace tessaloom::HostClock
