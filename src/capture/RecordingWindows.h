// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/CameraPreviewController.h"
#include "capture/CountdownPanel.h"
#include "capture/DesktopIconHider.h"
#include "capture/RegionSelection.h"

namespace tessaloom {

/// What a recording shows on the screen. A window that can't be made is logged and left out: a recording is
/// worth more than its windows. Main thread of a Qt application that has a screen.
class RecordingWindows {
  public:
    explicit RecordingWindows(CapturePlatform& platform) : icons_(platform), region_(platform) {}

    void showCountdown(int secondsLeft);
    void hideCountdown() { countdown_.hide(); }

    void showCamera(WebcamRecorder& camera, const CameraChoice& choice);
    void hideCamera() { camera_.hide(); }
    void hideDesktopIcons();
    void restoreDesktopIcons() { icons_.restore(); }
    RegionSelection& regionSelection() { return region_; }

  private:
    CountdownPanel countdown_;
    CameraPreviewController camera_;
    DesktopIconHider icons_;
    RegionSelection region_;
};

}  // namespace tessaloom
