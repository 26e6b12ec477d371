// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoroTask>
#include <memory>
#include <optional>
#include <stop_token>

#include "capture/CapturePlatform.h"
#include "capture/RegionHost.h"

namespace tessaloom {

/// Lets the user drag out an area of the screen. Main thread; must outlive the coroutines it returns.
class RegionSelection {
  public:
    explicit RegionSelection(CapturePlatform& platform) : platform_(platform) {}

    /// The area in global points; nothing when the user cancels, `cancel` is asked to stop, there is no
    /// screen, or another call replaces this one. Throws CaptureError or std::runtime_error when it can't be
    /// shown.
    QCoro::Task<std::optional<Rect>> selectRegion(std::stop_token cancel);

  private:
    CapturePlatform& platform_;
    std::shared_ptr<RegionHost> running_;
};

}  // namespace tessaloom
