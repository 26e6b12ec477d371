// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "platform/x11/X11ScreenStream.h"

namespace tessaloom::test {

/// Runs a stream of the server named by DISPLAY and holds the picture its frames add up to.
class RecordedStream {
  public:
    explicit RecordedStream(const StreamConfiguration& configuration)
        : width_(configuration.source.width),
          pixels_(static_cast<std::size_t>(width_ * configuration.source.height)),
          stream_(X11Connection::open(), configuration) {
        stream_.start([this](const ScreenFrame& frame) { add(frame); },
                      [this](const std::string& reason) { end(reason); });
    }

    void stop() { stream_.stop(); }

    /// True once the picture shows 0xRRGGBB at a place; false when ten seconds pass first.
    bool waitForColor(int x, int y, std::uint32_t color) {
        return waitFor([&] { return colorAt(x, y) == color; });
    }
    /// What the picture shows at a place, as 0xRRGGBB.
    std::uint32_t shownAt(int x, int y) {
        const std::lock_guard guard(lock_);
        return colorAt(x, y);
    }
    bool waitForFrames(std::size_t count) {
        return waitFor([&] { return times_.size() >= count; });
    }
    bool waitForEnd() {
        return waitFor([&] { return !endReason_.empty(); });
    }

    /// Whether any frame so far showed 0xRRGGBB at a place, where it must have changed to it.
    bool hasShown(int x, int y, std::uint32_t color) {
        const std::lock_guard guard(lock_);
        return shown_.contains({x, y, color});
    }

    std::vector<double> times() {
        const std::lock_guard guard(lock_);
        return times_;
    }
    std::size_t pixelsOfLastFrame() {
        const std::lock_guard guard(lock_);
        return lastPixels_;
    }
    std::string endReason() {
        const std::lock_guard guard(lock_);
        return endReason_;
    }

  private:
    bool waitFor(const std::function<bool()>& condition) {
        std::unique_lock guard(lock_);
        return changed_.wait_for(guard, std::chrono::seconds(10), condition);
    }

    std::uint32_t colorAt(int x, int y) const { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }

    void add(const ScreenFrame& frame) {
        const std::lock_guard guard(lock_);
        times_.push_back(frame.hostTime);
        lastPixels_ = 0;
        for (const ScreenPatch& patch : frame.patches) {
            lastPixels_ += static_cast<std::size_t>(patch.pixels.width * patch.pixels.height);
            for (int y = 0; y < patch.pixels.height; ++y) {
                for (int x = 0; x < patch.pixels.width; ++x) {
                    const std::uint8_t* pixel = patch.pixels.row(y) + 4 * x;
                    pixels_[static_cast<std::size_t>((patch.y + y) * width_ + patch.x + x)] =
                        static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
                    shown_.emplace(patch.x + x, patch.y + y, colorAt(patch.x + x, patch.y + y));
                }
            }
        }
        changed_.notify_all();
    }

    void end(const std::string& reason) {
        const std::lock_guard guard(lock_);
        endReason_ = reason;
        changed_.notify_all();
    }

    int width_;
    std::mutex lock_;
    std::condition_variable changed_;
    std::vector<std::uint32_t> pixels_;
    std::vector<double> times_;
    std::set<std::tuple<int, int, std::uint32_t>> shown_;
    std::size_t lastPixels_ = 0;
    std::string endReason_;
    X11ScreenStream stream_;  ///< last, so that its thread ends before what it uses
};

}  // namespace tessaloom::test
