// SPDX-License-Identifier: GPL-3.0-or-later
#include "Cost.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>

namespace tessaloom {
namespace {

using Clock = std::chrono::steady_clock;

constexpr double kilobytesInMegabyte = 1024;

double cpuSecondsOf(const rusage& usage) {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double cpuSeconds() {
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        sum += cpuSecondsOf(usage);
    }
    return sum;
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// The kernel counts the peak from here on.
void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

double peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes) return kilobytes / kilobytesInMegabyte;
    }
    throw std::runtime_error("the kernel doesn't tell the peak of the memory in use");
}

}  // namespace

Cost costOf(const std::function<void()>& work) {
    forgetPeak();
    const auto start = Clock::now();
    const double startCpu = cpuSeconds();
    work();
    return {secondsSince(start), cpuSeconds() - startCpu, peakMegabytes()};
}

Cost costOfCommand(const std::string& command) {
    // A program is charged the peak of whoever starts it, too.
    forgetPeak();
    const auto start = Clock::now();
    std::string shell = "sh";
    std::string option = "-c";
    std::string text = command;
    char* const words[] = {shell.data(), option.data(), text.data(), nullptr};
    pid_t child = 0;
    int status = -1;
    rusage usage{};
    if (posix_spawn(&child, "/bin/sh", nullptr, nullptr, words, environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error("failed: " + command);
    return {secondsSince(start), cpuSecondsOf(usage),
            static_cast<double>(usage.ru_maxrss) / kilobytesInMegabyte};
}

}  // namespace tessaloom
