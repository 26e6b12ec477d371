// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "media/AttackDetector.h"
#include "media/SoundSource.h"

namespace tessaloom {

/// Plays another sound faster or slower at its own pitch. What sounds at sample n of the other is heard at
/// n / speed, without a delay and without drift.
///
/// The output is laid from overlapping grains of the source, each taken from near its place where it best
/// continues the one before (WSOLA). Alone that would move the beginning of a sound by up to half a grain, or
/// repeat it. So where a sound sets in, the source runs on at its own speed for a moment, with the attack
/// exactly in its place; no other grain may play it.
class TimeStretch final : public SoundSource {
  public:
    /// `speed` is above 0; 0.001 and 1000 are as far as it goes.
    TimeStretch(std::unique_ptr<SoundSource> source, double speed);

    void read(std::span<StereoSample> target) override;

  private:
    std::int64_t nominalPosition(std::int64_t grain) const;
    std::int64_t heardAt(std::int64_t position) const;
    std::int64_t placeGrain(std::int64_t grain);
    std::int64_t bestContinuation(std::int64_t low, std::int64_t high) const;
    float mismatch(std::int64_t position, std::int64_t step) const;
    void layNextGrain();
    void readAhead(std::int64_t end);
    void forgetBefore(std::int64_t position);
    StereoSample at(std::int64_t position) const;

    std::unique_ptr<SoundSource> source_;
    double speed_;
    double attackSpeed_;  ///< how far ahead attacks are looked for, in grains
    AttackDetector detector_;
    std::vector<std::int64_t> attacks_;
    /// The source's samples from `bufferStart_` on.
    std::vector<StereoSample> buffer_;
    std::int64_t bufferStart_ = 0;
    /// The last grain laid: its number, and the source's sample at its middle.
    std::int64_t grain_ = 0;
    std::int64_t grainPosition_ = 0;
    std::vector<StereoSample> laid_;
    std::size_t laidUsed_ = 0;
};

}  // namespace tessaloom
