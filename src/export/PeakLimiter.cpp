// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/PeakLimiter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaloom {
namespace {

/// 5 ms: a change of level that quick is not heard as one, and that slow not as distortion.
constexpr std::size_t lookAhead = soundRate / 200;
/// How much of what is missing to full level comes back with each sample: a time constant of 80 ms.
constexpr double releaseStep = 1.0 / (0.08 * soundRate);
constexpr double practicallyFull = 0.9999;
/// Reductions are counted in integers, so that their sum is exactly zero when all of them are.
constexpr double unit = 1 << 30;

}  // namespace

PeakLimiter::PeakLimiter(std::unique_ptr<SoundSource> source)
    : source_(std::move(source)), waiting_(lookAhead), reductions_(lookAhead + 1) {}

void PeakLimiter::read(std::span<StereoSample> target) {
    if (!std::exchange(filled_, true)) {
        std::vector<StereoSample> first(lookAhead);
        source_->read(first);
        for (const StereoSample sample : first)
            next(sample);
    }
    source_->read(target);
    for (StereoSample& sample : target)
        sample = next(sample);
}

/// Takes the sample at the far end of the look-ahead and gives the one at its near end.
StereoSample PeakLimiter::next(StereoSample ahead) {
    const double lowest = lowestGainAhead(ahead);
    envelope_ = std::min(lowest, envelope_ + (1 - envelope_) * releaseStep);
    if (envelope_ > practicallyFull && lowest == 1) envelope_ = 1;

    // The mean over the look-ahead of an envelope that is low enough all along it.
    auto& reduction = reductions_[static_cast<std::size_t>(position_) % reductions_.size()];
    reductionSum_ -= reduction;
    reduction = static_cast<std::int64_t>(std::ceil((1 - envelope_) * unit));
    reductionSum_ += reduction;
    const double gain =
        1 - static_cast<double>(reductionSum_) / unit / static_cast<double>(reductions_.size());

    auto& slot = waiting_[static_cast<std::size_t>(position_) % waiting_.size()];
    const StereoSample due = std::exchange(slot, ahead);
    ++position_;
    return due * static_cast<float>(gain);
}

/// The gain at which every sample from the one that is due to `ahead` stays within full scale.
double PeakLimiter::lowestGainAhead(StereoSample ahead) {
    const double peak = std::max(std::abs(ahead.left), std::abs(ahead.right));
    const double gain = peak > 1 ? 1 / peak : 1;
    while (!peaks_.empty() && peaks_.back().gain >= gain)
        peaks_.pop_back();
    peaks_.push_back({position_, gain});
    if (peaks_.front().position + static_cast<std::int64_t>(lookAhead) < position_) peaks_.pop_front();
    return peaks_.front().gain;
}

}  // namespace tessaloom
