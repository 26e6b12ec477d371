// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>

namespace tessaloom {

/// What a command's exit status tells scripts.
enum class ExitStatus { done = 0, failed = 1, usage = 2, interrupted = 130 };

/// The command could not do what was asked: one plain sentence for stderr that says what and what to do.
class CommandError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The command line itself is wrong.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace tessaloom
