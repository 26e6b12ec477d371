// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace tessaloom {

/// What some work took.
struct Cost {
    double wallSeconds = 0;
    double cpuSeconds = 0;
    /// The most memory in use at a time.
    double peakMegabytes = 0;
};

/// Of work in this process; the processor time of programs it runs and waits for counts too, their memory
/// doesn't.
Cost costOf(const std::function<void()>& work);

/// Of a command of the shell. Throws std::runtime_error when it fails.
Cost costOfCommand(const std::string& command);

}  // namespace tessaloom
