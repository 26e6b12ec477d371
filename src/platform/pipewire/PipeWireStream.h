// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pipewire/stream.h>
#include <spa/pod/builder.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "platform/pipewire/PipeWireHealth.h"

namespace tessaloom {

/// What a buffer brings; empty when there is nothing in it, or nothing that can be looked at.
std::span<const std::uint8_t> contentOf(const spa_buffer& buffer);

/// The cycle of the server's graph that brought a buffer.
struct PipeWireCycle {
    pw_time time{};             ///< of its start
    std::uint32_t driver = 0;   ///< the node whose clock that is
    double length = 0;          ///< in seconds; 0 when it isn't known
    bool senderDrives = false;  ///< the node that sent the buffer sets the graph's pace, and follows no other
    bool senderPlays = false;   ///< the buffer is what that node is given to play
    /// Seconds from a cycle's start until what the sender is given in it is heard.
    double playbackDelay = 0;
};

/// Receives from a node of the sound server on a thread of its own. When the node, or the server, goes away,
/// connection and stream are opened anew until that works again.
class PipeWireStream {
  public:
    /// What is received, and what becomes of it. All is called on the stream's thread.
    class Client {
      public:
        virtual ~Client() = default;
        /// The stream's, which takes them over.
        virtual pw_properties* makeProperties() const = 0;
        /// What can be taken, in order of preference, in the builder's memory.
        virtual std::vector<const spa_pod*> formats(spa_pod_builder& builder) const = 0;
        /// How many buffers there must be at least: what may pile up while nobody has time for it.
        virtual int leastBuffers() const = 0;
        /// What follows is in this format.
        virtual void formatChosen(const spa_pod& format) = 0;
        virtual void received(const spa_buffer& buffer, const PipeWireCycle& cycle) = 0;
        /// Nothing comes, for this reason; told once, until something comes again.
        virtual void troubled(const std::string& reason) = 0;
    };

    /// Whatever is wrong with a device, the server tells in this time.
    static constexpr std::chrono::seconds openLimit{1};

    /// `client` outlives the stream.
    explicit PipeWireStream(Client& client)
        : client_(client), health_([&client](const std::string& reason) { client.troubled(reason); }) {}

    /// Does nothing where it has started already.
    void start();
    /// Until it is known whether something will come, or `limit` has passed. Throws std::runtime_error with
    /// the reason when nothing will.
    void waitUntilItWorks(std::chrono::milliseconds limit) { health_.wait(limit); }
    /// Nothing of the client is called after it returns. Safe to call at any time, also twice.
    void stop();

  private:
    void run(const std::stop_token& stop);
    void receive(const std::stop_token& stop);

    Client& client_;
    PipeWireHealth health_;
    std::mutex lock_;
    std::condition_variable_any wakeUp_;
    std::jthread thread_;
};

}  // namespace tessaloom
