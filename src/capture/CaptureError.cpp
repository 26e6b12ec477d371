// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CaptureError.h"

namespace tessaloom {

CaptureError CaptureError::noDisplay(const std::string& advice) {
    return {Kind::noDisplay, "No display available to capture. " + advice};
}

CaptureError CaptureError::noFrames() {
    return {
        Kind::noFrames,
        "The selected source never produced a frame. If you picked a window, make sure it is visible and not "
        "minimised."};
}

CaptureError CaptureError::windowNotFound(const std::string& wanted) {
    return {Kind::windowNotFound, "No visible window matches " + wanted +
                                      ". Check the app is open and the window is not minimised."};
}

}  // namespace tessaloom
