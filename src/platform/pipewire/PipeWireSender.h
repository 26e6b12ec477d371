// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pipewire/port.h>
#include <pipewire/stream.h>
#include <spa/param/latency-utils.h>

#include <cstdint>

#include "platform/pipewire/PipeWireConnection.h"
#include "platform/pipewire/PipeWireTrouble.h"

namespace tessaloom {

/// The node that a stream receives from, as the server tells of it while it changes. Belongs to the thread of
/// the connection.
class PipeWireSender {
  public:
    /// Both outlive it.
    PipeWireSender(PipeWireConnection& connection, pw_stream& stream);
    ~PipeWireSender();
    PipeWireSender(const PipeWireSender&) = delete;
    PipeWireSender& operator=(const PipeWireSender&) = delete;

    /// The node's number; SPA_ID_INVALID while there is none.
    std::uint32_t node() const { return node_; }
    /// It plays, and what it is given to play is received.
    bool plays() const { return plays_; }

    /// It has been started.
    bool runs() const { return trouble_.deviceRuns(); }
    /// Why nothing comes from it, if the server told.
    const std::optional<std::string>& trouble() const { return trouble_.told(); }

    /// Seconds from the start of a cycle until what the node is given in it is heard; 0 when it doesn't tell.
    /// `cycleLength` is in seconds, `rate` the graph's sample rate.
    double playbackDelay(double cycleLength, double rate) const;

  private:
    void linked(std::uint32_t link, const spa_dict& properties);
    void unlinked(std::uint32_t link);
    void watch(std::uint32_t port);
    void told(const pw_port_info& info);
    void latencyTold(const spa_pod& value);

    pw_stream& stream_;
    std::uint32_t node_ = SPA_ID_INVALID;
    std::uint32_t link_ = SPA_ID_INVALID;
    bool plays_ = false;
    spa_latency_info playback_{};
    spa_hook registryHook_{};
    spa_hook portHook_{};
    PipeWireHandle<pw_registry> registry_;
    PipeWireTrouble trouble_;
    PipeWireHandle<pw_port> port_;  ///< of the node, that the stream is linked to
};

}  // namespace tessaloom
