// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "capture/RecordingDevices.h"

namespace tessaloom {

/// The devices that the PipeWire server has. A device's identifier is its node's name.
class PipeWireDevices final : public RecordingDevices {
  public:
    std::unique_ptr<LiveSoundSource> openMicrophone(const std::string& identifier) override;
    std::unique_ptr<LiveSoundSource> openSystemAudio() override;
    std::unique_ptr<CameraSource> openCamera(const std::string& identifier) override;
};

}  // namespace tessaloom
