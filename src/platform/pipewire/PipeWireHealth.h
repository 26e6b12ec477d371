// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace tessaloom {

/// Whether something is received, or what is in the way.
class PipeWireHealth {
  public:
    using Report = std::function<void(const std::string& reason)>;

    /// How a stream stands.
    struct State {
        bool runs = false;       ///< the device has been started
        bool delivered = false;  ///< since the last look
        std::optional<std::string> trouble;
    };

    /// A device that went wrong before may say so until it works again.
    static constexpr std::chrono::milliseconds patience{100};

    /// `report` is called once for each time that what worked, or was new, doesn't work.
    explicit PipeWireHealth(Report report) : report_(std::move(report)) {}

    /// Whether the stream is to be given up: what is in the way stays there.
    bool look(const State& state, std::chrono::steady_clock::time_point now);
    /// The stream is gone, or given up.
    void failed(const std::string& reason);

    /// Until it is known whether it works, or `limit` has passed. Throws std::runtime_error with the reason
    /// when it doesn't. Any thread.
    void wait(std::chrono::milliseconds limit);

  private:
    void works();

    Report report_;
    bool reported_ = false;
    std::optional<std::chrono::steady_clock::time_point> troubledSince_;
    std::mutex lock_;  ///< guards what follows
    std::condition_variable known_;
    bool works_ = false;
    std::optional<std::string> reason_;
};

}  // namespace tessaloom
