// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

#include "base/Defaults.h"
#include "motion/FirstEdit.h"

namespace tessaloom {

/// What is recorded beside the screen.
struct RecordingOptions {
    bool captureMicrophone = false;
    bool captureWebcam = false;
    bool captureSystemAudio = false;
};

/// The user's choices for a recording, as one run of it takes them.
struct RecordingPreferences {
    int countdownSeconds = 3;  ///< 0 or less: none
    std::filesystem::path libraryFolder;

    bool hideDesktopIcons = false;

    bool captureMicrophone = true;
    bool captureWebcam = false;
    bool captureSystemAudio = true;
    /// Identifiers of devices; empty for the default one.
    std::string micDeviceID;
    std::string webcamDeviceID;
    CameraChoice camera;

    /// Of what is recorded beside the screen, `options` stand where the user never chose.
    static RecordingPreferences stored(const Defaults& defaults,
                                       const RecordingOptions& options = {.captureMicrophone = true,
                                                                          .captureWebcam = false,
                                                                          .captureSystemAudio = true});
};

}  // namespace tessaloom
