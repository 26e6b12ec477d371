// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFuture>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

namespace tessaloom {

/// Work on a thread of its own that nobody has to wait for but may. When this goes, it waits for the work,
/// but not longer than a limit; after that the thread goes on by itself, so the work must own what it uses,
/// and must not throw.
class BackgroundWork {
  public:
    BackgroundWork(std::function<void()> work, std::chrono::milliseconds longestWait);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    /// Finished when the work is.
    QFuture<void> future() const { return future_; }

  private:
    std::chrono::milliseconds longestWait_;
    QFuture<void> future_;
    std::future<void> ended_;  ///< the same, for a wait without events
    std::thread thread_;
};

}  // namespace tessaloom
