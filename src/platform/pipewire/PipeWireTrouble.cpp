// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireTrouble.h"

namespace tessaloom {
namespace {

template <typename Object>
PipeWireHandle<Object> bind(pw_registry& registry, std::uint32_t id, const char* type,
                            std::uint32_t version) {
    return PipeWireHandle<Object>(static_cast<Object*>(pw_registry_bind(&registry, id, type, version, 0)));
}

std::string textOf(const char* error) {
    return error != nullptr ? error : "unknown error";
}

}  // namespace

void PipeWireTrouble::watch(pw_registry& registry, std::uint32_t node, std::uint32_t link) {
    watchNothing();
    watchNode(registry, node);
    watchLink(registry, link);
}

void PipeWireTrouble::watchNothing() {
    if (node_) spa_hook_remove(&nodeHook_);
    if (link_) spa_hook_remove(&linkHook_);
    node_.reset();
    link_.reset();
    ofNode_.reset();
    deviceRuns_ = false;
}

void PipeWireTrouble::watchNode(pw_registry& registry, std::uint32_t node) {
    static const pw_node_events events = [] {
        pw_node_events handlers{};
        handlers.version = PW_VERSION_NODE_EVENTS;
        handlers.info = [](void* data, const pw_node_info* info) {
            static_cast<PipeWireTrouble*>(data)->told(*info);
        };
        return handlers;
    }();
    node_ = bind<pw_node>(registry, node, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE);
    if (node_) pw_node_add_listener(node_.get(), &nodeHook_, &events, this);
}

void PipeWireTrouble::watchLink(pw_registry& registry, std::uint32_t link) {
    static const pw_link_events events = [] {
        pw_link_events handlers{};
        handlers.version = PW_VERSION_LINK_EVENTS;
        handlers.info = [](void* data, const pw_link_info* info) {
            static_cast<PipeWireTrouble*>(data)->told(*info);
        };
        return handlers;
    }();
    link_ = bind<pw_link>(registry, link, PW_TYPE_INTERFACE_Link, PW_VERSION_LINK);
    if (link_) pw_link_add_listener(link_.get(), &linkHook_, &events, this);
}

void PipeWireTrouble::told(const pw_node_info& info) {
    deviceRuns_ = info.state == PW_NODE_STATE_RUNNING;
    ofNode_.reset();
    if (info.state == PW_NODE_STATE_ERROR) ofNode_ = textOf(info.error);
}

void PipeWireTrouble::told(const pw_link_info& info) {
    if (info.state == PW_LINK_STATE_ERROR) ofLink_ = textOf(info.error);
    if (info.state >= PW_LINK_STATE_PAUSED) ofLink_.reset();
}

}  // namespace tessaloom
