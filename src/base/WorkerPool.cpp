// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/WorkerPool.h"

#include <algorithm>

namespace tessaloom {

int WorkerPool::hardwareParticipants() {
    return static_cast<int>(std::thread::hardware_concurrency());
}

WorkerPool::WorkerPool(int participants) {
    for (int participant = 1; participant < participants; ++participant) {
        helpers_.emplace_back([this, participant](const std::stop_token& stop) { help(stop, participant); });
    }
}

WorkerPool::~WorkerPool() {
    for (std::jthread& helper : helpers_)
        helper.request_stop();
}

void WorkerPool::forEachBand(int rows, int bandHeight, const Band& band) {
    {
        const std::lock_guard lock(mutex_);
        band_ = &band;
        rows_ = rows;
        bandHeight_ = std::max(bandHeight, 1);
        nextRow_ = 0;
        ++round_;
    }
    started_.notify_all();
    takeBands(band, 0);
    // A helper that has not woken by now is not waited for: it finds no band and sleeps on.
    std::unique_lock lock(mutex_);
    band_ = nullptr;
    left_.wait(lock, [this] { return helping_ == 0; });
}

void WorkerPool::help(const std::stop_token& stop, int participant) {
    std::uint64_t lastRound = 0;
    std::unique_lock lock(mutex_);
    while (started_.wait(lock, stop, [&] { return band_ != nullptr && round_ != lastRound; })) {
        lastRound = round_;
        const Band& band = *band_;
        ++helping_;
        lock.unlock();
        takeBands(band, participant);
        lock.lock();
        if (--helping_ == 0) left_.notify_one();
    }
}

void WorkerPool::takeBands(const Band& band, int participant) {
    for (int first = nextRow_.fetch_add(bandHeight_); first < rows_;
         first = nextRow_.fetch_add(bandHeight_)) {
        band(first, std::min(first + bandHeight_, rows_), participant);
    }
}

}  // namespace tessaloom
