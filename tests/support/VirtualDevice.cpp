// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/VirtualDevice.h"

#include <spa/param/latency-utils.h>
#include <spa/param/param.h>

#include <stdexcept>

namespace tessaloom::test {
namespace {

pw_properties* toProperties(const std::vector<std::pair<std::string, std::string>>& values) {
    pw_properties* properties = pw_properties_new(nullptr, nullptr);
    for (const auto& [key, value] : values)
        pw_properties_set(properties, key.c_str(), value.c_str());
    return properties;
}

}  // namespace

VirtualDevice::VirtualDevice(const std::string& socket, const Properties& properties) {
    pw_init(nullptr, nullptr);
    loop_ = pw_thread_loop_new("device", nullptr);
    context_ = pw_context_new(pw_thread_loop_get_loop(loop_), nullptr, 0);
    core_ = pw_context_connect(context_, pw_properties_new(PW_KEY_REMOTE_NAME, socket.c_str(), nullptr), 0);
    if (core_ == nullptr) throw std::runtime_error("no sound server at " + socket);
    stream_ = pw_stream_new(core_, "device", toProperties(properties));
}

void VirtualDevice::plugIn(std::vector<const spa_pod*> parameters, pw_stream_flags flags,
                           pw_direction direction) {
    static const pw_stream_events events = [] {
        pw_stream_events handlers{};
        handlers.version = PW_VERSION_STREAM_EVENTS;
        handlers.process = [](void* data) { static_cast<VirtualDevice*>(data)->process(); };
        handlers.param_changed = [](void* data, std::uint32_t id, const spa_pod* value) {
            if (id == SPA_PARAM_Format && value != nullptr) static_cast<VirtualDevice*>(data)->formatChosen();
        };
        handlers.state_changed = [](void* data, pw_stream_state, pw_stream_state state, const char*) {
            static_cast<VirtualDevice*>(data)->streaming(state == PW_STREAM_STATE_STREAMING);
        };
        handlers.io_changed = [](void* data, std::uint32_t id, void* area, std::uint32_t) {
            if (id == SPA_IO_Position)
                static_cast<VirtualDevice*>(data)->positionShared(static_cast<spa_io_position*>(area));
        };
        return handlers;
    }();
    pw_stream_add_listener(stream_, &hook_, &events, this);
    pw_stream_connect(stream_, direction, PW_ID_ANY, flags, parameters.data(),
                      static_cast<std::uint32_t>(parameters.size()));
    pw_thread_loop_start(loop_);
}

const spa_pod* VirtualDevice::latency(spa_pod_builder& builder, spa_direction direction, float cycles) {
    spa_latency_info info{};
    info.direction = direction;
    info.min_quantum = info.max_quantum = cycles;
    return spa_latency_build(&builder, SPA_PARAM_Latency, &info);
}

void VirtualDevice::unplug() {
    pw_thread_loop_lock(loop_);
    if (stream_ != nullptr) pw_stream_destroy(stream_);
    stream_ = nullptr;
    pw_thread_loop_unlock(loop_);
}

VirtualDevice::~VirtualDevice() {
    unplug();
    pw_thread_loop_stop(loop_);
    pw_core_disconnect(core_);
    pw_context_destroy(context_);
    pw_thread_loop_destroy(loop_);
    pw_deinit();
}

}  // namespace tessaloom::test
