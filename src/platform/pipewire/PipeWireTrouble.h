// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <pipewire/link.h>
#include <pipewire/node.h>

#include <cstdint>
#include <optional>
#include <string>

#include "platform/pipewire/PipeWireConnection.h"

namespace tessaloom {

/// Whether a device that is there runs, and why it sends nothing: it can't be opened, or it and the receiver
/// can't agree. The server tells that of the device's node and of the link to it, and not to the stream that
/// waits. Belongs to the thread of the connection.
class PipeWireTrouble {
  public:
    PipeWireTrouble() = default;
    ~PipeWireTrouble() { watchNothing(); }
    PipeWireTrouble(const PipeWireTrouble&) = delete;
    PipeWireTrouble& operator=(const PipeWireTrouble&) = delete;

    void watch(pw_registry& registry, std::uint32_t node, std::uint32_t link);

    /// The device was opened, here or by another program.
    bool deviceRuns() const { return deviceRuns_; }
    /// What is wrong now, in the server's words.
    const std::optional<std::string>& told() const { return ofNode_ ? ofNode_ : ofLink_; }

  private:
    void watchNothing();
    void watchNode(pw_registry& registry, std::uint32_t node);
    void watchLink(pw_registry& registry, std::uint32_t link);
    void told(const pw_node_info& info);
    void told(const pw_link_info& info);

    bool deviceRuns_ = false;
    std::optional<std::string> ofNode_;
    std::optional<std::string> ofLink_;  ///< stays when the link is given up
    spa_hook nodeHook_{};
    spa_hook linkHook_{};
    PipeWireHandle<pw_node> node_;
    PipeWireHandle<pw_link> link_;
};

}  // namespace tessaloom
