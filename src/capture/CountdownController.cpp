// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CountdownController.h"

#include <QCoroFuture>
#include <atomic>
#include <chrono>
#include <exception>
#include <memory>

#include "base/Log.h"

namespace tessaloom {
namespace {

using namespace std::chrono_literals;

constexpr const char* spaceBarName = "SPCE";
constexpr int slicesPerSecond = 10;

/// Hears the space bar as long as it lives, without taking it away from the window that has the focus.
class SkipFlag {
  public:
    explicit SkipFlag(std::unique_ptr<InputEventSource> keys) : keys_(std::move(keys)) {
        keys_->start([this](const RawInput& input) {
            if (input.kind == RawInput::Kind::key && input.keyName == spaceBarName) value_ = true;
        });
    }
    ~SkipFlag() { keys_->stop(); }
    SkipFlag(const SkipFlag&) = delete;
    SkipFlag& operator=(const SkipFlag&) = delete;

    bool value() const { return value_; }

  private:
    std::atomic<bool> value_ = false;
    std::unique_ptr<InputEventSource> keys_;
};

/// None where the desktop doesn't report keys: the countdown then takes its full time.
std::unique_ptr<SkipFlag> listenForSpace(CapturePlatform& platform) {
    try {
        return std::make_unique<SkipFlag>(platform.makeInputEventSource());
    } catch (const std::exception& error) {
        qCInfo(Log::recording, "The countdown can't be skipped: %s", error.what());
        return nullptr;
    }
}

}  // namespace

QCoro::Task<> CountdownController::run(int seconds, std::stop_token cancel, std::function<void()> hideMore) {
    if (seconds >= 1) co_await count(seconds, cancel);
    if (hideMore) hideMore();
    // What was on the screen needs a moment to be really off it.
    if (seconds >= 1 || hideMore) co_await clock_.after(120ms);
}

QCoro::Task<> CountdownController::count(int seconds, std::stop_token cancel) {
    const auto skip = listenForSpace(platform_);
    const auto isOver = [&] { return cancel.stop_requested() || (skip && skip->value()); };
    for (int left = seconds; left > 0 && !isOver(); --left) {
        presenter_.showCountdown(left);
        for (int slice = 0; slice < slicesPerSecond && !isOver(); ++slice) {
            co_await clock_.after(1000ms / slicesPerSecond);
        }
    }
    presenter_.hideCountdown();
}

}  // namespace tessaloom
