// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace tessaloom {

/// Threads that share out the rows of one picture at a time. The caller works too, so a pool of one has no
/// thread of its own. One caller at a time.
class WorkerPool {
  public:
    /// Handles rows `first` to `last` (exclusive). `participant` counts from 0 (the caller) and is never used
    /// by two bands at once, so it can name a scratch buffer. Must not throw. Pass a reference wrapper to a
    /// callable to keep this wrapper from allocating.
    using Band = std::function<void(int first, int last, int participant)>;

    static int hardwareParticipants();

    /// `participants` below 1 counts as 1.
    explicit WorkerPool(int participants = hardwareParticipants());
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    int participants() const { return static_cast<int>(helpers_.size()) + 1; }

    /// Calls `band` for all rows in pieces of `bandHeight`, in no particular order; returns when all are
    /// done.
    void forEachBand(int rows, int bandHeight, const Band& band);

  private:
    void help(const std::stop_token& stop, int participant);
    void takeBands(const Band& band, int participant);

    std::mutex mutex_;
    std::condition_variable_any started_;
    std::condition_variable left_;
    const Band* band_ = nullptr;
    std::uint64_t round_ = 0;
    int helping_ = 0;
    int rows_ = 0;
    int bandHeight_ = 1;
    std::atomic<int> nextRow_ = 0;
    std::vector<std::jthread> helpers_;
};

}  // namespace tessaloom
