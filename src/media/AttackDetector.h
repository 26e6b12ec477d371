// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "media/StereoSample.h"

namespace tessaloom {

/// Finds where sounds set in: the moments at which it gets far louder than it was just before.
class AttackDetector {
  public:
    /// At least `spacing` samples lie between two attacks.
    explicit AttackDetector(std::int64_t spacing) : spacing_(spacing) {}

    /// Takes the samples one by one. Now and then it finds an attack, a little after it happened: the sample
    /// it began at, exact to `blockLength`.
    std::optional<std::int64_t> feed(StereoSample sample);

    static constexpr std::int64_t blockLength = 32;

  private:
    /// About the longest period of a voice, whose beats aren't attacks.
    static constexpr std::size_t blocksBefore = 16;

    std::int64_t spacing_;
    std::int64_t position_ = 0;
    float energy_ = 0;  ///< of the block that is being filled
    std::array<float, blocksBefore> energiesBefore_{};
    std::size_t oldest_ = 0;
    std::optional<std::int64_t> lastAttack_;
};

}  // namespace tessaloom
