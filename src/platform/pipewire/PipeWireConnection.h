// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tessaloom {

struct PipeWireDelete {
    void operator()(pw_loop* loop) const { pw_loop_destroy(loop); }
    void operator()(pw_context* context) const { pw_context_destroy(context); }
    void operator()(pw_core* core) const { pw_core_disconnect(core); }
    void operator()(pw_stream* stream) const { pw_stream_destroy(stream); }
    void operator()(pw_port* port) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(port)); }
    void operator()(pw_node* node) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(node)); }
    void operator()(pw_link* link) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(link)); }
    void operator()(pw_metadata* metadata) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(metadata)); }
    void operator()(pw_registry* registry) const { pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry)); }
};

template <typename Object>
using PipeWireHandle = std::unique_ptr<Object, PipeWireDelete>;

/// A device or a program that the server knows.
struct PipeWireNode {
    std::string name;         ///< the same whenever the device is there
    std::string description;  ///< for people
    std::string mediaClass;
};

/// What the server knows.
struct PipeWireInventory {
    std::vector<PipeWireNode> nodes;
    /// The names of the nodes that serve where none is asked for, by what they serve as:
    /// "default.audio.source" and the like.
    std::map<std::string, std::string> defaults;
};

/// A connection to the sound server, the one that the environment names, with an event loop of its own.
/// Belongs to the thread that opened it, except where told.
class PipeWireConnection {
  public:
    /// Throws std::runtime_error when there is no server.
    static std::unique_ptr<PipeWireConnection> open();
    ~PipeWireConnection();
    PipeWireConnection(const PipeWireConnection&) = delete;
    PipeWireConnection& operator=(const PipeWireConnection&) = delete;

    pw_loop* loop() { return loop_.get(); }
    pw_core* core() { return core_.get(); }
    /// The server has gone; nothing of this connection works any more.
    bool lost() const { return lost_; }

    /// Waits until something happens, but not longer than `limit`, and handles it.
    void iterate(std::chrono::milliseconds limit);
    /// Ends an iterate() that waits. Any thread, also a real-time one.
    void wake();

    /// As of now. Throws std::runtime_error when the server doesn't answer within `limit`.
    PipeWireInventory inventory(std::chrono::milliseconds limit);

  private:
    /// The library as long as anybody uses it.
    struct Library {
        Library() { pw_init(nullptr, nullptr); }
        ~Library() { pw_deinit(); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };

    PipeWireConnection();
    void listen();
    void roundTrip(std::chrono::steady_clock::time_point deadline);

    Library library_;
    PipeWireHandle<pw_loop> loop_;
    PipeWireHandle<pw_context> context_;
    PipeWireHandle<pw_core> core_;
    spa_source* wakeUp_ = nullptr;  ///< the loop's own
    spa_hook coreHook_{};
    int answered_ = -1;
    bool lost_ = false;
};

}  // namespace tessaloom
