// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "support/VirtualDevice.h"

namespace tessaloom::test {

/// Beeps of a tenth of a second at each full second of HostClock, silence between: -1 to 1.
float beep(double hostTime);

/// A virtual microphone in a world that beeps, or a player that beeps through the default speakers.
class VirtualSound final : public VirtualDevice {
  public:
    enum class Kind {
        microphone,
        deafMicrophone,  ///< hears nothing
        player,
    };

    /// `name` is the node's, `group` that of the sound card a microphone is on, if it is on one, and
    /// `latency` what it tells of the age of a cycle's first sample, in cycles. Throws std::runtime_error
    /// without a server.
    VirtualSound(const std::string& socket, Kind kind, const std::string& name, const std::string& group = {},
                 float latency = 0);
    ~VirtualSound() override { unplug(); }

  private:
    void process() override;

    Kind kind_;
};

}  // namespace tessaloom::test
