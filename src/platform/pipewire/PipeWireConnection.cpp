// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireConnection.h"

#include <cerrno>
#include <stdexcept>

namespace tessaloom {
namespace {

using std::chrono::steady_clock;

std::string text(const spa_dict* properties, const char* key) {
    const char* value = properties != nullptr ? spa_dict_lookup(properties, key) : nullptr;
    return value != nullptr ? value : "";
}

void addNode(void* data, std::uint32_t, std::uint32_t, const char* type, std::uint32_t,
             const spa_dict* properties) {
    if (std::string_view(type) != PW_TYPE_INTERFACE_Node) return;
    static_cast<std::vector<PipeWireNode>*>(data)->push_back({text(properties, PW_KEY_NODE_NAME),
                                                              text(properties, PW_KEY_NODE_DESCRIPTION),
                                                              text(properties, PW_KEY_MEDIA_CLASS)});
}

}  // namespace

PipeWireConnection::PipeWireConnection()
    : loop_(pw_loop_new(nullptr)), context_(pw_context_new(loop_.get(), nullptr, 0)) {
    pw_loop_enter(loop_.get());
    wakeUp_ = pw_loop_add_event(
        loop_.get(), [](void*, std::uint64_t) {}, nullptr);
}

PipeWireConnection::~PipeWireConnection() {
    if (core_) spa_hook_remove(&coreHook_);
    core_.reset();
    context_.reset();
    pw_loop_leave(loop_.get());
}

std::unique_ptr<PipeWireConnection> PipeWireConnection::open() {
    std::unique_ptr<PipeWireConnection> connection(new PipeWireConnection);
    connection->core_.reset(pw_context_connect(connection->context_.get(), nullptr, 0));
    if (!connection->core_) throw std::runtime_error("There is no PipeWire sound server.");
    connection->listen();
    return connection;
}

void PipeWireConnection::listen() {
    static const pw_core_events events = [] {
        pw_core_events handlers{};
        handlers.version = PW_VERSION_CORE_EVENTS;
        handlers.done = [](void* data, std::uint32_t id, int sequence) {
            if (id == PW_ID_CORE) static_cast<PipeWireConnection*>(data)->answered_ = sequence;
        };
        handlers.error = [](void* data, std::uint32_t id, int, int result, const char*) {
            if (id == PW_ID_CORE && result == -EPIPE) static_cast<PipeWireConnection*>(data)->lost_ = true;
        };
        return handlers;
    }();
    pw_core_add_listener(core_.get(), &coreHook_, &events, this);
}

void PipeWireConnection::iterate(std::chrono::milliseconds limit) {
    pw_loop_iterate(loop_.get(), static_cast<int>(limit.count()));
}

void PipeWireConnection::wake() {
    pw_loop_signal_event(loop_.get(), wakeUp_);
}

void PipeWireConnection::roundTrip(std::chrono::milliseconds limit) {
    const int asked = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    const auto deadline = steady_clock::now() + limit;
    while (answered_ != asked && !lost_ && steady_clock::now() < deadline)
        iterate(std::chrono::milliseconds(50));
    if (answered_ != asked) throw std::runtime_error("The PipeWire sound server doesn't answer.");
}

std::vector<PipeWireNode> PipeWireConnection::nodes(std::chrono::milliseconds limit) {
    static const pw_registry_events events = [] {
        pw_registry_events handlers{};
        handlers.version = PW_VERSION_REGISTRY_EVENTS;
        handlers.global = addNode;
        return handlers;
    }();
    std::vector<PipeWireNode> found;
    const PipeWireHandle<pw_registry> registry(pw_core_get_registry(core_.get(), PW_VERSION_REGISTRY, 0));
    spa_hook hook{};
    pw_registry_add_listener(registry.get(), &hook, &events, &found);
    roundTrip(limit);
    spa_hook_remove(&hook);
    return found;
}

}  // namespace tessaloom
