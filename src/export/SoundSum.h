// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <vector>

#include "media/SoundSource.h"

namespace tessaloom {

/// Several sounds at once, each at its own level.
class SoundSum final : public SoundSource {
  public:
    void add(std::unique_ptr<SoundSource> sound, double gain);
    bool empty() const { return parts_.empty(); }

    void read(std::span<StereoSample> target) override;

  private:
    struct Part {
        std::unique_ptr<SoundSource> sound;
        float gain = 1;
    };

    std::vector<Part> parts_;
    std::vector<StereoSample> scratch_;
};

}  // namespace tessaloom
