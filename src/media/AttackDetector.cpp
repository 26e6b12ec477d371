// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/AttackDetector.h"

#include <numeric>

namespace tessaloom {
namespace {

/// Times louder, in energy, than before.
constexpr float attackRatio = 16;
/// Energy of a block that nobody hears, at -60 dB.
constexpr float inaudible = 1e-6F * AttackDetector::blockLength;

}  // namespace

std::optional<std::int64_t> AttackDetector::feed(StereoSample sample) {
    const float mono = 0.5F * (sample.left + sample.right);
    energy_ += mono * mono;
    if (++position_ % blockLength != 0) return std::nullopt;

    const float before = std::accumulate(energiesBefore_.begin(), energiesBefore_.end(), inaudible);
    const bool louder = energy_ * blocksBefore > attackRatio * before;
    energiesBefore_[oldest_] = energy_;
    oldest_ = (oldest_ + 1) % blocksBefore;
    energy_ = 0;
    const std::int64_t start = position_ - blockLength;
    if (!louder || (lastAttack_ && start - *lastAttack_ < spacing_)) return std::nullopt;
    lastAttack_ = start;
    return start;
}

}  // namespace tessaloom
