// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <utility>

namespace tessaloom {

/// Qt leaves by exit(), from inside its event loop, when the X server that it shows windows on is gone. While
/// a guard lives, `finish` runs first, on the thread that leaves. One at a time; main thread.
class ExitGuard {
  public:
    explicit ExitGuard(std::function<void()> finish);
    ~ExitGuard();
    ExitGuard(const ExitGuard&) = delete;
    ExitGuard& operator=(const ExitGuard&) = delete;

  private:
    static void runCurrent();

    /// What exit() calls takes no argument, so the guard has to be found from here.
    static inline ExitGuard* current = nullptr;

    std::function<void()> finish_;
};

}  // namespace tessaloom
