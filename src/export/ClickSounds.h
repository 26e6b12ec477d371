// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "media/SoundSource.h"

namespace tessaloom {

/// One short sound, played whole at each of many times. Where they overlap they add up.
class ClickSounds final : public SoundSource {
  public:
    /// `starts` in samples, in any order.
    ClickSounds(std::vector<StereoSample> click, std::vector<std::int64_t> starts);

    void read(std::span<StereoSample> target) override;

    /// Where the last one has died away, in samples.
    std::int64_t end() const;

  private:
    std::vector<StereoSample> click_;
    std::vector<std::int64_t> starts_;
    std::size_t firstSounding_ = 0;
    std::int64_t position_ = 0;
};

}  // namespace tessaloom
