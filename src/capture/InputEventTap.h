// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "capture/RawEvent.h"

namespace tessaloom {

/// Collects clicks, key presses and scrolls of the whole desktop. It only listens.
class InputEventTap {
  public:
    /// No `source` where the desktop has none for us.
    explicit InputEventTap(std::unique_ptr<InputEventSource> source) : source_(std::move(source)) {}

    /// False, with a line in the log, when the desktop doesn't let us listen.
    bool start();
    /// What the user has set, as it was at the start.
    ClickLimits clickLimits() const { return source_ ? source_->clickLimits() : ClickLimits(); }
    /// Nothing is collected after it returns. Safe to call at any time, also twice.
    void stop();

    /// Hands over the events since the last call. Any thread.
    std::vector<RawEvent> takeEvents();

  private:
    void add(const RawInput& input);

    std::unique_ptr<InputEventSource> source_;  ///< may be missing
    std::mutex lock_;
    std::vector<RawEvent> events_;
};

}  // namespace tessaloom
