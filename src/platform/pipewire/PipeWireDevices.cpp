// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireDevices.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "capture/CaptureError.h"
#include "platform/pipewire/PipeWireCameraSource.h"
#include "platform/pipewire/PipeWireConnection.h"
#include "platform/pipewire/PipeWireSoundSource.h"

namespace tessaloom {
namespace {

constexpr std::chrono::seconds answerLimit{2};

/// What is of one kind, as the server names it.
struct DeviceKind {
    const char* mediaClass;   ///< "Audio/Source" takes in "Audio/Source/Virtual"
    const char* defaultKey;   ///< in the inventory
    const char* defaultName;  ///< where the server tells no better one
};

constexpr DeviceKind microphone{"Audio/Source", "default.audio.source", "the default microphone"};
constexpr DeviceKind speakers{"Audio/Sink", "default.audio.sink", "the default speakers"};
constexpr DeviceKind camera{"Video/Source", "default.video.source", "the default camera"};

PipeWireInventory inventory() {
    return PipeWireConnection::open()->inventory(answerLimit);
}

/// Nothing when there is no server.
PipeWireInventory inventoryIfAny() {
    try {
        return inventory();
    } catch (const std::runtime_error&) {
        return {};
    }
}

bool hasAny(const PipeWireInventory& inventory, const DeviceKind& kind) {
    return std::ranges::any_of(inventory.nodes, [&](const PipeWireNode& node) {
        return node.mediaClass.starts_with(kind.mediaClass);
    });
}

std::optional<PipeWireNode> find(const PipeWireInventory& inventory, const DeviceKind& kind,
                                 const std::string& name) {
    const auto found = std::ranges::find_if(inventory.nodes, [&](const PipeWireNode& node) {
        return node.name == name && node.mediaClass.starts_with(kind.mediaClass);
    });
    return found == inventory.nodes.end() || name.empty() ? std::nullopt : std::optional(*found);
}

/// Described as the device that it is now, but without a name: it is whichever it will be.
PipeWireNode defaultOne(const PipeWireInventory& inventory, const DeviceKind& kind) {
    const auto name = inventory.defaults.find(kind.defaultKey);
    const auto now = name == inventory.defaults.end() ? std::nullopt : find(inventory, kind, name->second);
    return {.name = {}, .description = now ? now->description : kind.defaultName, .mediaClass = {}};
}

/// The device with this name; else the default one.
PipeWireNode choose(const PipeWireInventory& inventory, const DeviceKind& kind, const std::string& name) {
    return find(inventory, kind, name).value_or(defaultOne(inventory, kind));
}

}  // namespace

std::unique_ptr<LiveSoundSource> PipeWireDevices::openMicrophone(const std::string& identifier) {
    const auto known = inventoryIfAny();
    if (!hasAny(known, microphone)) throw CaptureError::noMicrophone();
    const auto chosen = choose(known, microphone, identifier);
    auto source = std::make_unique<PipeWireSoundSource>(PipeWireSoundSource::Kind::microphone, chosen.name,
                                                        chosen.description);
    source->open();
    return source;
}

std::unique_ptr<LiveSoundSource> PipeWireDevices::openSystemAudio() {
    return std::make_unique<PipeWireSoundSource>(PipeWireSoundSource::Kind::systemAudio, std::string(),
                                                 defaultOne(inventory(), speakers).description);
}

std::unique_ptr<CameraSource> PipeWireDevices::openCamera(const std::string& identifier) {
    const auto known = inventoryIfAny();
    if (!hasAny(known, camera)) throw CaptureError::noCamera();
    const auto chosen = choose(known, camera, identifier);
    auto source = std::make_unique<PipeWireCameraSource>(chosen.name, chosen.description);
    source->open();
    return source;
}

}  // namespace tessaloom
