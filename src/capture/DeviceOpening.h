// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>

#include "base/BoundedWait.h"
#include "base/WaitClock.h"

namespace tessaloom {

/// Opens a device on a thread of its own, since the sound server may hang; that is then an error like those
/// that `open` throws. Main thread.
template <typename Device>
QCoro::Task<std::unique_ptr<Device>> opened(std::function<std::unique_ptr<Device>()> open, WaitClock& clock) {
    struct Result {
        std::unique_ptr<Device> device;
        std::exception_ptr error;
    };
    const auto result = std::make_shared<Result>();
    std::function<void()> work = [open = std::move(open), result] {
        try {
            result->device = open();
        } catch (...) {
            result->error = std::current_exception();
        }
    };
    const bool inTime = co_await runBounded(std::move(work), std::chrono::seconds(4), clock);
    if (!inTime) throw std::runtime_error("The sound server doesn't answer.");
    if (result->error) std::rethrow_exception(result->error);
    co_return std::move(result->device);
}

}  // namespace tessaloom
