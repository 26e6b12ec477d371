// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>

#include "capture/CameraSource.h"
#include "capture/LiveSoundSource.h"

namespace tessaloom {

/// The machine's microphones, speakers and cameras. Callable from any thread; what it makes lives on. Opening
/// a device takes as long as the sound server does, three seconds at most.
class RecordingDevices {
  public:
    virtual ~RecordingDevices() = default;

    /// The microphone with this identifier; when that isn't there, or the identifier is empty, the default
    /// one. Throws CaptureError::noMicrophone when there is none at all, and std::runtime_error, in words for
    /// people, when it can't be used.
    virtual std::unique_ptr<LiveSoundSource> openMicrophone(const std::string& identifier) = 0;
    /// What the default speakers play, in stereo. Throws std::runtime_error when there is no sound server.
    virtual std::unique_ptr<LiveSoundSource> openSystemAudio() = 0;
    /// Like openMicrophone; throws CaptureError::noCamera.
    virtual std::unique_ptr<CameraSource> openCamera(const std::string& identifier) = 0;
};

}  // namespace tessaloom
