// SPDX-License-Identifier: GPL-3.0-or-later
#include "soak/RecorderRun.h"

#include <signal.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "base/HostClock.h"

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> command(const std::string& recorder, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{recorder, "record", "--countdown", "0"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

Environment withLibrary(Environment environment, const std::filesystem::path& library) {
    environment["TESSALOOM_LIBRARY"] = library.string();
    environment["TESSALOOM_CONFIG"] = (library / "settings.ini").string();
    environment["TESSALOOM_VERBOSE"] = "1";
    environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    return environment;
}

}  // namespace

RecorderRun::RecorderRun(const std::string& recorder, Environment environment,
                         const std::filesystem::path& library, const std::vector<std::string>& arguments)
    : started_(HostClock::seconds()),
      program_(command(recorder, arguments), withLibrary(std::move(environment), library)) {
    while (messages().find("Recording started") == std::string::npos) {
        if (!program_.running()) throw std::runtime_error(messages());
        std::this_thread::sleep_for(1ms);
    }
    startSeconds_ = HostClock::seconds() - started_;
}

double RecorderRun::stop() {
    const double asked = HostClock::seconds();
    program_.signal(SIGINT);
    if (program_.waitForExit(60s) != 0) throw std::runtime_error(messages());
    return HostClock::seconds() - asked;
}

}  // namespace tessaloom::test
