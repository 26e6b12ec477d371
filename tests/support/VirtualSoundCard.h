// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "support/VirtualDevice.h"

namespace tessaloom::test {

/// A sound card, or one of several in a group: all that is in it, as a microphone, goes by the same clock,
/// that of the card with the highest priority.
class VirtualSoundCard final : public VirtualDevice {
  public:
    static constexpr auto group = "test.sound-card";

    struct Traits {
        double clockError = 0;  ///< 300e-6 for 300 parts in a million fast
        bool hasDefaultSpeakers = true;
        int clockPriority = 30'000;
        float latency = 0;  ///< in cycles, from a cycle's start to its sound's, as it tells
    };

    /// `name` is the speakers' node. Throws std::runtime_error without a server.
    VirtualSoundCard(const std::string& socket, const std::string& name, const Traits& traits);
    ~VirtualSoundCard() override { unplug(); }

    /// When the speakers began to beep, in HostClock seconds: a player that was held up is heard late, or not
    /// at all.
    std::vector<double> beepsPlayed() const;

  private:
    void process() override;
    void streaming(bool on) override;
    void positionShared(spa_io_position* position) override { position_ = position; }
    void beginCycle();
    void beginCycleAt(double hostTime);
    void play(std::span<const float> samples, double start);

    double latency_;                       ///< cycles
    double rate_;                          ///< samples in a second of HostClock
    spa_source* timer_ = nullptr;          ///< the loop's
    spa_io_position* position_ = nullptr;  ///< the server's, which the driver of its cycles fills in
    double cycle_ = 0;                     ///< HostClock seconds at which the present one began
    double lastLoud_ = 0;                  ///< HostClock seconds
    mutable std::mutex lock_;
    std::vector<double> beeps_;
};

}  // namespace tessaloom::test
