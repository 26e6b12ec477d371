// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingDialogs.h"

namespace tessaloom {

DialogText startFailedDialog(const std::string& reason, bool mayRecordScreen) {
    const char* const title = "Couldn't start recording";
    if (mayRecordScreen) return {title, reason, "OK", {}};
    return {title, "Tessaloom needs permission to record your screen.\n\n" + reason, "Set Up Permissions",
            "Cancel"};
}

DialogText microphoneDialog(const std::string& reason) {
    return {"Microphone unavailable", "This recording will have no microphone audio.\n\n" + reason,
            "Record without mic", "Cancel"};
}

DialogText cameraDialog(const std::string& reason) {
    return {"Recording without the camera", reason, "Continue", "Camera Settings"};
}

}  // namespace tessaloom
