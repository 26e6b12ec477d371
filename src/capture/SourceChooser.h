// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CapturePlatform.h"
#include "capture/SourcePicker.h"

namespace tessaloom {

/// Our own picker, for desktops that have none: a sheet with live pictures of all displays and windows.
class SourceChooser final : public SourcePicker {
  public:
    explicit SourceChooser(CapturePlatform& platform) : platform_(platform) {}

    QCoro::Task<Picked> pick(std::stop_token cancel) override;

  private:
    CapturePlatform& platform_;
};

}  // namespace tessaloom
