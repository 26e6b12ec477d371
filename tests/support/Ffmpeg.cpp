// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Ffmpeg.h"

#include <chrono>
#include <stdexcept>

#include "support/ChildProcess.h"

namespace tessaloom::test {

void runFfmpeg(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"ffmpeg", "-v", "error", "-nostdin", "-y"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ChildProcess process(command, currentEnvironment());
    if (process.waitForExit(std::chrono::seconds(30)) != 0)
        throw std::runtime_error("ffmpeg failed: " + process.errors());
}

}  // namespace tessaloom::test
