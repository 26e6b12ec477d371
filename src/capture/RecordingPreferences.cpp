// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RecordingPreferences.h"

#include "core/RawString.h"

namespace tessaloom {
namespace {

CameraChoice storedCamera(const Defaults& defaults) {
    CameraChoice camera;
    const auto shape = defaults.text("webcamShape");
    if (shape) camera.shape = fromRawString<WebcamConfig::Shape>(*shape).value_or(camera.shape);
    const double size = defaults.number("webcamSize").value_or(0);
    if (size > 0) camera.relativeSize = size;
    camera.mirrored = defaults.boolean("webcamMirror").value_or(false);
    return camera;
}

}  // namespace

RecordingPreferences RecordingPreferences::stored(const Defaults& defaults, const RecordingOptions& options) {
    return {.countdownSeconds = defaults.integer("countdownSeconds").value_or(3),
            .libraryFolder = Defaults::libraryFolder(),
            .hideDesktopIcons = defaults.boolean("hideDesktopIcons").value_or(false),
            .captureMicrophone = defaults.boolean("captureMic").value_or(options.captureMicrophone),
            .captureWebcam = defaults.boolean("captureWebcam").value_or(options.captureWebcam),
            .captureSystemAudio = defaults.boolean("captureSystemAudio").value_or(options.captureSystemAudio),
            .micDeviceID = defaults.text("micDeviceID").value_or(std::string()),
            .webcamDeviceID = defaults.text("webcamDeviceID").value_or(std::string()),
            .camera = storedCamera(defaults)};
}

}  // namespace tessaloom
