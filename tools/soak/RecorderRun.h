// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/ChildProcess.h"

namespace tessaloom::test {

/// One run of the recorder, without a countdown, with what it says about itself.
class RecorderRun {
  public:
    /// Returns once it records. `arguments` say what. Throws std::runtime_error with the program's words when
    /// it ends instead.
    RecorderRun(const std::string& recorder, Environment environment, const std::filesystem::path& library,
                const std::vector<std::string>& arguments);

    /// From the program's start to the word that it records, the first frame included.
    double startSeconds() const { return startSeconds_; }
    pid_t process() const { return program_.id(); }
    std::string messages() const { return program_.errors(); }

    /// Ctrl-C; the seconds until the program has ended. Throws std::runtime_error when it doesn't end well.
    double stop();

  private:
    double started_;
    ChildProcess program_;
    double startSeconds_ = 0;
};

}  // namespace tessaloom::test
