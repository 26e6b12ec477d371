// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace tessaloom {

/// Hands values from one thread to another, at most `capacity` of them on the way. Either side may close it:
/// then no push succeeds any more, and what is on the way can still be taken out.
template <typename Value>
class BoundedQueue {
  public:
    explicit BoundedQueue(std::size_t capacity) : capacity_(capacity) {}

    /// Waits for room. False, and the value is lost, when the queue is closed.
    bool push(Value value) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return closed_ || values_.size() < capacity_; });
        if (closed_) return false;
        values_.push_back(std::move(value));
        changed_.notify_all();
        return true;
    }

    /// Waits for a value. Nothing when the queue is closed and empty.
    std::optional<Value> pop() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return closed_ || !values_.empty(); });
        if (values_.empty()) return std::nullopt;
        std::optional<Value> value(std::move(values_.front()));
        values_.pop_front();
        changed_.notify_all();
        return value;
    }

    void close() {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        changed_.notify_all();
    }

  private:
    const std::size_t capacity_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Value> values_;
    bool closed_ = false;
};

}  // namespace tessaloom
