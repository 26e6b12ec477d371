// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireDevices.h"

#include <algorithm>
#include <stdexcept>

#include "capture/CaptureError.h"
#include "platform/pipewire/PipeWireCameraSource.h"
#include "platform/pipewire/PipeWireConnection.h"
#include "platform/pipewire/PipeWireSoundSource.h"

namespace tessaloom {
namespace {

constexpr std::chrono::seconds answerLimit{2};

/// The devices of a kind: "Audio/Source" takes in "Audio/Source/Virtual".
std::vector<PipeWireNode> devices(std::string_view mediaClass) {
    auto nodes = PipeWireConnection::open()->nodes(answerLimit);
    std::erase_if(nodes, [&](const PipeWireNode& node) { return !node.mediaClass.starts_with(mediaClass); });
    return nodes;
}

/// Nothing when there is no such device, or no server.
std::vector<PipeWireNode> devicesIfAny(std::string_view mediaClass) {
    try {
        return devices(mediaClass);
    } catch (const std::runtime_error&) {
        return {};
    }
}

/// The device with this name; else the default one, which has none.
PipeWireNode choose(const std::vector<PipeWireNode>& nodes, const std::string& name, const char* otherwise) {
    const auto found = std::ranges::find(nodes, name, &PipeWireNode::name);
    if (found != nodes.end() && !name.empty()) return *found;
    return {.name = {}, .description = otherwise, .mediaClass = {}};
}

}  // namespace

std::unique_ptr<LiveSoundSource> PipeWireDevices::openMicrophone(const std::string& identifier) {
    const auto microphones = devicesIfAny("Audio/Source");
    if (microphones.empty()) throw CaptureError::noMicrophone();
    const auto chosen = choose(microphones, identifier, "the default microphone");
    auto microphone = std::make_unique<PipeWireSoundSource>(PipeWireSoundSource::Kind::microphone,
                                                            chosen.name, chosen.description);
    microphone->open();
    return microphone;
}

std::unique_ptr<LiveSoundSource> PipeWireDevices::openSystemAudio() {
    devices("Audio/Sink");  // only whether the server answers
    return std::make_unique<PipeWireSoundSource>(PipeWireSoundSource::Kind::systemAudio, std::string(),
                                                 "the default speakers");
}

std::unique_ptr<CameraSource> PipeWireDevices::openCamera(const std::string& identifier) {
    const auto cameras = devicesIfAny("Video/Source");
    if (cameras.empty()) throw CaptureError::noCamera();
    const auto chosen = choose(cameras, identifier, "the default camera");
    auto camera = std::make_unique<PipeWireCameraSource>(chosen.name, chosen.description);
    camera->open();
    return camera;
}

}  // namespace tessaloom
