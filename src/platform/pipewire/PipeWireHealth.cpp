// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireHealth.h"

#include <stdexcept>
#include <utility>

namespace tessaloom {

bool PipeWireHealth::look(const State& state, std::chrono::steady_clock::time_point now) {
    if (state.delivered) reported_ = false;
    const bool isTroubled = state.trouble && !state.delivered;
    if (!isTroubled) {
        troubledSince_.reset();
        if (state.delivered || state.runs) works();
        return false;
    }
    if (!troubledSince_) troubledSince_ = now;
    return now - *troubledSince_ >= patience;
}

void PipeWireHealth::works() {
    const std::lock_guard guard(lock_);
    works_ = true;
    known_.notify_all();
}

void PipeWireHealth::failed(const std::string& reason) {
    troubledSince_.reset();
    if (!std::exchange(reported_, true)) report_(reason);
    const std::lock_guard guard(lock_);
    reason_ = reason;
    known_.notify_all();
}

void PipeWireHealth::wait(std::chrono::milliseconds limit) {
    std::unique_lock guard(lock_);
    known_.wait_for(guard, limit, [this] { return works_ || reason_; });
    if (reason_ && !works_) throw std::runtime_error(*reason_);
}

}  // namespace tessaloom
