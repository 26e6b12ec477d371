// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/MusicBed.h"

#include <algorithm>
#include <cstddef>

namespace tessaloom {
namespace {

constexpr std::int64_t fadeLength = soundRate / 2;

}  // namespace

MusicBed::MusicBed(std::unique_ptr<AudioReader> music, std::int64_t length)
    : music_(std::move(music)), length_(length) {}

void MusicBed::read(std::span<StereoSample> target) {
    readRound(target);
    for (StereoSample& sample : target)
        sample = sample * level(position_++);
}

void MusicBed::readRound(std::span<StereoSample> target) {
    while (!target.empty()) {
        const std::size_t count = music_->read(musicPosition_, target);
        const bool empty = count == 0 && musicPosition_ == 0;
        if (empty) return;
        musicPosition_ = count < target.size() ? 0 : musicPosition_ + static_cast<std::int64_t>(count);
        target = target.subspan(count);
    }
}

float MusicBed::level(std::int64_t position) const {
    const std::int64_t nearestEnd = std::min(position, length_ - position);
    return static_cast<float>(std::clamp<std::int64_t>(nearestEnd, 0, fadeLength)) / fadeLength;
}

}  // namespace tessaloom
