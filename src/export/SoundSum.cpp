// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/SoundSum.h"

#include <algorithm>
#include <utility>

namespace tessaloom {

void SoundSum::add(std::unique_ptr<SoundSource> sound, double gain) {
    parts_.push_back({std::move(sound), static_cast<float>(gain)});
}

void SoundSum::read(std::span<StereoSample> target) {
    std::ranges::fill(target, StereoSample{});
    scratch_.resize(target.size());
    for (const Part& part : parts_) {
        part.sound->read(scratch_);
        for (std::size_t i = 0; i < target.size(); ++i)
            target[i] += scratch_[i] * part.gain;
    }
}

}  // namespace tessaloom
