// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "media/SoundSource.h"

namespace tessaloom {

/// Keeps a sound within full scale without clipping it: the level goes down smoothly just before a peak and
/// comes back after it, on both sides alike. What stays within full scale passes unchanged, to the bit, and
/// nothing is delayed.
class PeakLimiter final : public SoundSource {
  public:
    explicit PeakLimiter(std::unique_ptr<SoundSource> source);

    void read(std::span<StereoSample> target) override;

  private:
    struct Peak {
        std::int64_t position = 0;
        double gain = 1;
    };

    StereoSample next(StereoSample ahead);
    double lowestGainAhead(StereoSample ahead);

    std::unique_ptr<SoundSource> source_;
    std::int64_t position_ = 0;
    /// The gains that peaks within the look-ahead ask for: each the lowest from there on, ascending.
    std::deque<Peak> peaks_;
    double envelope_ = 1;
    /// For the samples within the look-ahead, in a ring: what they are, and how far the envelope is below 1.
    std::vector<StereoSample> waiting_;
    std::vector<std::int64_t> reductions_;
    std::int64_t reductionSum_ = 0;
    bool filled_ = false;
};

}  // namespace tessaloom
