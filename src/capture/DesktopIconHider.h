// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickView>
#include <memory>
#include <vector>

#include "capture/CapturePlatform.h"

namespace tessaloom {

/// Covers the icons on the desktop, but no window, with the wallpaper, stretched; with plain grey where that
/// can't be had. Main thread.
class DesktopIconHider {
  public:
    explicit DesktopIconHider(CapturePlatform& platform) : platform_(platform) {}

    /// Called twice it leaves one cover a screen.
    void hide();
    void restore() { windows_.clear(); }

  private:
    CapturePlatform& platform_;
    std::vector<std::unique_ptr<QQuickView>> windows_;  ///< one a screen
};

}  // namespace tessaloom
