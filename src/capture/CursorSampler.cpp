// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CursorSampler.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/HostClock.h"
#include "capture/RelativeLocation.h"

namespace tessaloom {

CursorSampler::CursorSampler(std::unique_ptr<PointerSource> pointer, double origin, const Rect& displayFrame)
    : pointer_(std::move(pointer)), origin_(origin), displayFrame_(displayFrame) {}

void CursorSampler::start(double rate) {
    thread_ = std::jthread([this, rate](const std::stop_token& stopToken) { run(stopToken, 1.0 / rate); });
}

void CursorSampler::stop() {
    thread_.request_stop();
    pointer_->stop();
    if (thread_.joinable()) thread_.join();
}

std::vector<CursorSample> CursorSampler::takeSamples() {
    const std::lock_guard guard(lock_);
    return std::exchange(samples_, {});
}

void CursorSampler::run(const std::stop_token& stop, double interval) {
    using std::chrono::steady_clock;
    const auto step =
        std::chrono::duration_cast<steady_clock::duration>(std::chrono::duration<double>(interval));
    auto next = steady_clock::now();
    do {
        sample();
        // After a stall sampling goes on from now, without making up for what was missed.
        next = std::max(next + step, steady_clock::now());
        std::this_thread::sleep_until(next);
    } while (!stop.stop_requested());
}

void CursorSampler::sample() {
    const auto point = pointer_->location();
    const auto place = point ? relativeLocation(*point, displayFrame_) : std::nullopt;
    const double pts = HostClock::seconds() - origin_;
    if (!place || pts < 0) return;
    const std::lock_guard guard(lock_);
    samples_.push_back({pts, place->x, place->y});
}

}  // namespace tessaloom
