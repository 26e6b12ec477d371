// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <optional>
#include <stop_token>

#include "capture/CaptureTarget.h"

namespace tessaloom {

/// What a user picked to record.
struct Picked {
    std::optional<ContentFilter> filter;  ///< absent when the user cancelled or there was nothing to show
};

/// Lets the user pick a display or a window by sight. Main thread; must outlive the coroutines it returns.
class SourcePicker {
  public:
    virtual ~SourcePicker() = default;

    /// Only the first that happens counts: a pick, the user cancelling, or `cancel` being asked to stop. A
    /// picker that can't be shown is logged, and counts as cancelled.
    virtual QCoro::Task<Picked> pick(std::stop_token cancel) = 0;
};

}  // namespace tessaloom
