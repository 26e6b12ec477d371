// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "support/VirtualDevice.h"

namespace tessaloom::test {

/// A sound card whose clock runs fast. Its speakers are the default ones; what else is in its group, as a
/// microphone, goes by the same clock.
class VirtualSoundCard final : public VirtualDevice {
  public:
    static constexpr auto group = "test.sound-card";

    /// `name` is the speakers' node. `clockError` is the clock's, 300e-6 for 300 parts in a million fast.
    /// Throws std::runtime_error without a server.
    VirtualSoundCard(const std::string& socket, const std::string& name, double clockError);
    ~VirtualSoundCard() override { unplug(); }

  private:
    void process() override;
    void streaming(bool on) override;
    void positionShared(spa_io_position* position) override { position_ = position; }
    void beginCycle();

    double rate_;                          ///< samples in a second of HostClock
    spa_source* timer_ = nullptr;          ///< the loop's
    spa_io_position* position_ = nullptr;  ///< the server's, which the driver of its cycles fills in
    double cycle_ = 0;                     ///< HostClock seconds at which the present one began
};

}  // namespace tessaloom::test
