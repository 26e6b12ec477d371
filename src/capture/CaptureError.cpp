// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/CaptureError.h"

namespace tessaloom {

CaptureError CaptureError::noDisplay(const std::string& advice) {
    return {Kind::noDisplay, "No display available to capture.", advice};
}

CaptureError CaptureError::noMicrophone() {
    return {Kind::noMicrophone, "No microphone available."};
}

CaptureError CaptureError::noCamera() {
    return {Kind::noCamera, "No camera available."};
}

CaptureError CaptureError::noFrames() {
    return {
        Kind::noFrames,
        "The selected source never produced a frame. If you picked a window, make sure it is visible and not "
        "minimised."};
}

CaptureError CaptureError::cameraNotAuthorized() {
    return {Kind::cameraNotAuthorized,
            "Tessaloom doesn't have permission to use the camera. Allow it in the desktop's settings under "
            "Privacy, then Camera."};
}

CaptureError CaptureError::windowNotFound(const std::string& wanted) {
    return {Kind::windowNotFound, "No visible window matches " + wanted +
                                      ". Check the app is open and the window is not minimised."};
}

}  // namespace tessaloom
