// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "support/VirtualDevice.h"

namespace tessaloom::test {

/// A virtual camera of 320x240 pixels and 30 pictures a second in a world that flashes: white in the first
/// fifth of each second of HostClock, otherwise black.
class VirtualCamera final : public VirtualDevice {
  public:
    static constexpr int width = 320;
    static constexpr int height = 240;

    enum class Behaviour {
        delivers,
        isStuck,             ///< never delivers a picture
        tellsNoTimes,        ///< of its pictures
        hasStrangePictures,  ///< in a format that nobody takes
        tellsForeignTimes,   ///< by a clock that nobody else has
    };

    /// `name` is the node's. `clockError` is how much too fast its pictures come, 300e-6 for 300 parts in a
    /// million. Throws std::runtime_error without a server.
    VirtualCamera(const std::string& socket, const std::string& name,
                  Behaviour behaviour = Behaviour::delivers, double clockError = 0);
    ~VirtualCamera() override { unplug(); }

  private:
    void process() override;
    void formatChosen() override;
    void streaming(bool on) override;

    Behaviour behaviour_;
    long pictureInterval_;  ///< nanoseconds
    std::uint64_t count_ = 0;
    spa_source* timer_ = nullptr;  ///< the loop's
};

}  // namespace tessaloom::test
