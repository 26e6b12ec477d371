// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/X11FrameDelivery.h"

#include <algorithm>
#include <utility>

namespace tessaloom {
namespace {

constexpr std::size_t leastDepth = 6;
constexpr std::size_t greatestDepth = 15;
constexpr std::size_t mostBytes = 128'000'000;

std::vector<std::unique_ptr<X11Frame>> makeFrames(const X11Connection& connection,
                                                  std::size_t bytesPerFrame) {
    std::vector<std::unique_ptr<X11Frame>> frames;
    while (frames.size() < X11FrameDelivery::depth(bytesPerFrame))
        frames.push_back(std::make_unique<X11Frame>(connection, bytesPerFrame));
    return frames;
}

}  // namespace

std::size_t X11FrameDelivery::depth(std::size_t bytesPerFrame) {
    return std::clamp(mostBytes / std::max<std::size_t>(bytesPerFrame, 1), leastDepth, greatestDepth);
}

X11FrameDelivery::X11FrameDelivery(const X11Connection& connection, std::size_t bytesPerFrame,
                                   ScreenStream::FrameHandler onFrame)
    : onFrame_(std::move(onFrame)),
      empty_(makeFrames(connection, bytesPerFrame)),
      thread_([this] { run(); }) {}

std::unique_ptr<X11Frame> X11FrameDelivery::takeEmpty() {
    std::unique_lock guard(lock_);
    if (empty_.empty()) ++timesBehind_;
    changed_.wait(guard, [this] { return closed_ || !empty_.empty(); });
    if (closed_) return nullptr;
    auto frame = std::move(empty_.back());
    empty_.pop_back();
    return frame;
}

void X11FrameDelivery::deliver(std::unique_ptr<X11Frame> frame) {
    const std::lock_guard guard(lock_);
    onTheirWay_.push_back(std::move(frame));
    changed_.notify_all();
}

void X11FrameDelivery::close() {
    const std::lock_guard guard(lock_);
    closed_ = true;
    changed_.notify_all();
}

void X11FrameDelivery::finish() {
    close();
    if (thread_.joinable()) thread_.join();
}

int X11FrameDelivery::timesBehind() const {
    const std::lock_guard guard(lock_);
    return timesBehind_;
}

void X11FrameDelivery::run() {
    std::unique_lock guard(lock_);
    for (;;) {
        changed_.wait(guard, [this] { return closed_ || !onTheirWay_.empty(); });
        if (onTheirWay_.empty()) return;
        auto frame = std::move(onTheirWay_.front());
        onTheirWay_.pop_front();
        guard.unlock();
        onFrame_({frame->hostTime, frame->patches});
        guard.lock();
        empty_.push_back(std::move(frame));
        changed_.notify_all();
    }
}

}  // namespace tessaloom
