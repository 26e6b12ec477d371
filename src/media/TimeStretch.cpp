// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/TimeStretch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace tessaloom {
namespace {

/// From the middle of a grain to the middle of the next; a grain is twice as long.
constexpr std::int64_t hop = 512;
/// How far a grain may lie from its place. Both ways together it is a period of a deep voice.
constexpr std::int64_t searchReach = 256;
/// Beyond this speed nothing is understood any more, and looking ahead would cost more and more.
constexpr double fastestWithAttacks = 16;
/// At this speed an hour is over in a few seconds; what is faster would be even less to hear.
constexpr double fastest = 1000;
constexpr double slowest = 0.001;

/// The weight of the grain that begins; the one that ends has the rest.
std::array<float, hop> risingWeights() {
    std::array<float, hop> weights{};
    for (std::size_t i = 0; i < hop; ++i) {
        const double phase = std::numbers::pi * (static_cast<double>(i) + 0.5) / hop;
        weights[i] = static_cast<float>(0.5 - 0.5 * std::cos(phase));
    }
    return weights;
}

std::int64_t rounded(double value) {
    return std::llround(value);
}

}  // namespace

TimeStretch::TimeStretch(std::unique_ptr<SoundSource> source, double speed)
    : source_(std::move(source)),
      speed_(std::clamp(speed, slowest, fastest)),
      attackSpeed_(std::min(speed, fastestWithAttacks)),
      detector_(rounded(3 * hop * std::max(attackSpeed_, 1.0))) {}

void TimeStretch::read(std::span<StereoSample> target) {
    while (!target.empty()) {
        if (laidUsed_ == laid_.size()) layNextGrain();
        const auto count = std::min(target.size(), laid_.size() - laidUsed_);
        std::copy_n(laid_.begin() + static_cast<std::ptrdiff_t>(laidUsed_), count, target.begin());
        laidUsed_ += count;
        target = target.subspan(count);
    }
}

void TimeStretch::layNextGrain() {
    static const std::array<float, hop> rising = risingWeights();
    const std::int64_t next = placeGrain(grain_ + 1);
    readAhead(std::max(grainPosition_ + hop, next));
    laid_.resize(hop);
    for (std::int64_t i = 0; i < hop; ++i) {
        const StereoSample ending = at(grainPosition_ + i);
        const float weight = rising[static_cast<std::size_t>(i)];
        // Written so that a grain that simply continues the last one changes nothing.
        laid_[static_cast<std::size_t>(i)] = ending + (at(next - hop + i) + ending * -1) * weight;
    }
    laidUsed_ = 0;
    ++grain_;
    grainPosition_ = next;
    const auto before = rounded(hop * (1 + std::max(attackSpeed_, 1.0))) + searchReach;
    forgetBefore(std::min(grainPosition_, nominalPosition(grain_ + 1) - before));
}

std::int64_t TimeStretch::nominalPosition(std::int64_t grain) const {
    return rounded(static_cast<double>(grain * hop) * speed_);
}

std::int64_t TimeStretch::heardAt(std::int64_t position) const {
    return rounded(static_cast<double>(position) / speed_);
}

/// The source's sample for the middle of a grain.
std::int64_t TimeStretch::placeGrain(std::int64_t grain) {
    const std::int64_t middle = grain * hop;
    const std::int64_t nominal = nominalPosition(grain);
    readAhead(grainPosition_ + hop);
    readAhead(nominal + std::max(rounded(hop * attackSpeed_), searchReach + hop) +
              AttackDetector::blockLength);
    std::int64_t earliest = std::numeric_limits<std::int64_t>::min();
    std::int64_t latest = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t attack : attacks_) {
        const std::int64_t distance = middle - heardAt(attack);
        if (std::abs(distance) < hop) return attack + distance;
        if (distance > 0) {
            earliest = attack + hop;
        } else {
            latest = std::min(latest, attack - hop);
        }
    }
    if (earliest < nominal - searchReach)
        std::erase_if(attacks_, [&](std::int64_t attack) { return heardAt(attack) < middle; });
    return bestContinuation(std::clamp(nominal - searchReach, earliest, latest),
                            std::clamp(nominal + searchReach, earliest, latest));
}

/// Where between the two the source is most like what the last grain ends with.
std::int64_t TimeStretch::bestContinuation(std::int64_t low, std::int64_t high) const {
    const auto best = [this](std::int64_t first, std::int64_t last, std::int64_t step, std::int64_t start) {
        std::int64_t position = start;
        float least = mismatch(start, step);
        // Nothing is better than 0, as in silence.
        for (std::int64_t candidate = first; candidate <= last && least > 0; candidate += step) {
            const float found = mismatch(candidate, step);
            if (found < least) {
                least = found;
                position = candidate;
            }
        }
        return position;
    };
    constexpr std::int64_t coarse = 4;
    const std::int64_t start = std::clamp(grainPosition_ + hop, low, high);
    const std::int64_t near = best(low, high, coarse, start);
    return best(std::max(near - coarse, low), std::min(near + coarse, high), 1, near);
}

/// How unlike the last grain's end is what a grain at `position` begins with; every `step`-th sample counts.
float TimeStretch::mismatch(std::int64_t position, std::int64_t step) const {
    float sum = 0;
    for (std::int64_t i = 0; i < hop; i += step) {
        const StereoSample ending = at(grainPosition_ + i);
        const StereoSample beginning = at(position - hop + i);
        const float difference = ending.left + ending.right - beginning.left - beginning.right;
        sum += difference * difference;
    }
    return sum;
}

void TimeStretch::readAhead(std::int64_t end) {
    const std::int64_t held = bufferStart_ + static_cast<std::int64_t>(buffer_.size());
    if (end <= held) return;
    const std::size_t old = buffer_.size();
    buffer_.resize(old + static_cast<std::size_t>(end - held));
    const auto added = std::span(buffer_).subspan(old);
    source_->read(added);
    if (speed_ > fastestWithAttacks) return;
    for (const StereoSample sample : added)
        if (const auto attack = detector_.feed(sample)) attacks_.push_back(*attack);
}

void TimeStretch::forgetBefore(std::int64_t position) {
    readAhead(position);
    const auto count = std::max<std::int64_t>(position - bufferStart_, 0);
    buffer_.erase(buffer_.begin(), buffer_.begin() + count);
    bufferStart_ += count;
}

StereoSample TimeStretch::at(std::int64_t position) const {
    return position < bufferStart_ ? StereoSample{}
                                   : buffer_[static_cast<std::size_t>(position - bufferStart_)];
}

}  // namespace tessaloom
