// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingWindows.h"

#include <exception>
#include <functional>

#include "base/Log.h"

namespace tessaloom {
namespace {

void showIfPossible(const std::function<void()>& show) {
    try {
        show();
    } catch (const std::exception& error) {
        qCCritical(Log::recording, "A window can't be shown: %s", error.what());
    }
}

}  // namespace

void RecordingWindows::showCountdown(int secondsLeft) {
    showIfPossible([&] { countdown_.show(secondsLeft); });
}

void RecordingWindows::showCamera(WebcamRecorder& camera, const CameraChoice& choice) {
    showIfPossible([&] { camera_.show(camera, choice); });
}

void RecordingWindows::hideDesktopIcons() {
    showIfPossible([&] { icons_.hide(); });
}

}  // namespace tessaloom
