// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/PipeWireConnection.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cerrno>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace tessaloom {
namespace {

using std::chrono::steady_clock;

std::string text(const spa_dict* properties, const char* key) {
    const char* value = properties != nullptr ? spa_dict_lookup(properties, key) : nullptr;
    return value != nullptr ? value : "";
}

/// Gathers what the server tells as long as it lives.
class InventoryTaking {
  public:
    explicit InventoryTaking(pw_core* core) : registry_(pw_core_get_registry(core, PW_VERSION_REGISTRY, 0)) {
        static const pw_registry_events events = [] {
            pw_registry_events handlers{};
            handlers.version = PW_VERSION_REGISTRY_EVENTS;
            handlers.global = [](void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                                 const spa_dict* properties) {
                static_cast<InventoryTaking*>(data)->add(id, type, properties);
            };
            return handlers;
        }();
        pw_registry_add_listener(registry_.get(), &registryHook_, &events, this);
    }
    ~InventoryTaking() {
        if (metadata_) spa_hook_remove(&metadataHook_);
        spa_hook_remove(&registryHook_);
    }
    InventoryTaking(const InventoryTaking&) = delete;
    InventoryTaking& operator=(const InventoryTaking&) = delete;

    PipeWireInventory found;

  private:
    void add(std::uint32_t id, std::string_view type, const spa_dict* properties) {
        if (type == PW_TYPE_INTERFACE_Node) {
            found.nodes.push_back({text(properties, PW_KEY_NODE_NAME),
                                   text(properties, PW_KEY_NODE_DESCRIPTION),
                                   text(properties, PW_KEY_MEDIA_CLASS)});
        }
        const bool tellsDefaults =
            type == PW_TYPE_INTERFACE_Metadata && text(properties, PW_KEY_METADATA_NAME) == "default";
        if (tellsDefaults && !metadata_) listenToDefaults(id);
    }

    void listenToDefaults(std::uint32_t id) {
        static const pw_metadata_events events = [] {
            pw_metadata_events handlers{};
            handlers.version = PW_VERSION_METADATA_EVENTS;
            handlers.property = [](void* data, std::uint32_t, const char* key, const char*,
                                   const char* value) {
                if (key != nullptr && value != nullptr)
                    static_cast<InventoryTaking*>(data)->found.defaults[key] = nameIn(value);
                return 0;
            };
            return handlers;
        }();
        metadata_.reset(static_cast<pw_metadata*>(
            pw_registry_bind(registry_.get(), id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0)));
        if (metadata_) pw_metadata_add_listener(metadata_.get(), &metadataHook_, &events, this);
    }

    /// Of {"name":"..."}; empty when there is none.
    static std::string nameIn(const char* json) {
        return QJsonDocument::fromJson(json).object().value(QLatin1String("name")).toString().toStdString();
    }

    spa_hook registryHook_{};
    spa_hook metadataHook_{};
    PipeWireHandle<pw_registry> registry_;
    PipeWireHandle<pw_metadata> metadata_;
};

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

void PipeWireConnection::roundTrip(steady_clock::time_point deadline) {
    const int asked = pw_core_sync(core_.get(), PW_ID_CORE, 0);
    while (answered_ != asked && !lost_ && steady_clock::now() < deadline)
        iterate(std::chrono::milliseconds(50));
    if (answered_ != asked) throw std::runtime_error("The PipeWire sound server doesn't answer.");
}

PipeWireInventory PipeWireConnection::inventory(std::chrono::milliseconds limit) {
    InventoryTaking taking(core_.get());
    const auto deadline = steady_clock::now() + limit;
    roundTrip(deadline);  // what there is
    roundTrip(deadline);  // what is told of it
    return std::move(taking.found);
}

}  // namespace tessaloom
