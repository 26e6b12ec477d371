// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireSender.h"

#include <pipewire/keys.h>
#include <pipewire/link.h>
#include <spa/param/param.h>

#include <array>
#include <cstdlib>
#include <string_view>

namespace tessaloom {
namespace {

std::uint32_t number(const spa_dict& properties, const char* key) {
    const char* value = spa_dict_lookup(&properties, key);
    return value != nullptr ? static_cast<std::uint32_t>(std::strtoul(value, nullptr, 10)) : SPA_ID_INVALID;
}

}  // namespace

PipeWireSender::PipeWireSender(PipeWireConnection& connection, pw_stream& stream)
    : stream_(stream), registry_(pw_core_get_registry(connection.core(), PW_VERSION_REGISTRY, 0)) {
    static const pw_registry_events events = [] {
        pw_registry_events handlers{};
        handlers.version = PW_VERSION_REGISTRY_EVENTS;
        handlers.global = [](void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                             const spa_dict* properties) {
            if (std::string_view(type) == PW_TYPE_INTERFACE_Link && properties != nullptr)
                static_cast<PipeWireSender*>(data)->linked(id, *properties);
        };
        handlers.global_remove = [](void* data, std::uint32_t id) {
            static_cast<PipeWireSender*>(data)->unlinked(id);
        };
        return handlers;
    }();
    pw_registry_add_listener(registry_.get(), &registryHook_, &events, this);
}

PipeWireSender::~PipeWireSender() {
    if (port_) spa_hook_remove(&portHook_);
    spa_hook_remove(&registryHook_);
}

/// Each channel has a link of its own; the node at their other end is the same.
void PipeWireSender::linked(std::uint32_t link, const spa_dict& properties) {
    if (number(properties, PW_KEY_LINK_INPUT_NODE) != pw_stream_get_node_id(&stream_)) return;
    link_ = link;
    node_ = number(properties, PW_KEY_LINK_OUTPUT_NODE);
    trouble_.watch(*registry_, node_, link_);
    watch(number(properties, PW_KEY_LINK_OUTPUT_PORT));
}

void PipeWireSender::unlinked(std::uint32_t link) {
    if (link != link_) return;
    link_ = SPA_ID_INVALID;
    node_ = SPA_ID_INVALID;
}

void PipeWireSender::watch(std::uint32_t port) {
    static const pw_port_events events = [] {
        pw_port_events handlers{};
        handlers.version = PW_VERSION_PORT_EVENTS;
        handlers.info = [](void* data, const pw_port_info* info) {
            static_cast<PipeWireSender*>(data)->told(*info);
        };
        handlers.param = [](void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                            const spa_pod* value) {
            if (id == SPA_PARAM_Latency && value != nullptr)
                static_cast<PipeWireSender*>(data)->latencyTold(*value);
        };
        return handlers;
    }();
    if (port_) spa_hook_remove(&portHook_);
    plays_ = false;
    playback_ = {};
    port_.reset(static_cast<pw_port*>(
        pw_registry_bind(registry_.get(), port, PW_TYPE_INTERFACE_Port, PW_VERSION_PORT, 0)));
    if (!port_) return;
    pw_port_add_listener(port_.get(), &portHook_, &events, this);
    std::array<std::uint32_t, 1> wanted{SPA_PARAM_Latency};
    pw_port_subscribe_params(port_.get(), wanted.data(), wanted.size());
}

void PipeWireSender::told(const pw_port_info& info) {
    if ((info.change_mask & PW_PORT_CHANGE_MASK_PROPS) == 0 || info.props == nullptr) return;
    const char* value = spa_dict_lookup(info.props, PW_KEY_PORT_MONITOR);
    plays_ = value != nullptr && spa_atob(value);
}

/// A port tells two: how old is what comes out of it, and how long what goes in takes to be heard.
void PipeWireSender::latencyTold(const spa_pod& value) {
    spa_latency_info info{};
    if (spa_latency_parse(&value, &info) >= 0 && info.direction == SPA_DIRECTION_INPUT) playback_ = info;
}

double PipeWireSender::playbackDelay(double cycleLength, double rate) const {
    const auto middle = [](auto least, auto most) {
        return (static_cast<double>(least) + static_cast<double>(most)) / 2;
    };
    return middle(playback_.min_quantum, playback_.max_quantum) * cycleLength +
           middle(playback_.min_rate, playback_.max_rate) / rate +
           middle(playback_.min_ns, playback_.max_ns) * 1e-9;
}

}  // namespace tessaloom
