// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ClickSounds.h"

#include <algorithm>
#include <utility>

namespace tessaloom {

ClickSounds::ClickSounds(std::vector<StereoSample> click, std::vector<std::int64_t> starts)
    : click_(std::move(click)), starts_(std::move(starts)) {
    std::ranges::sort(starts_);
}

void ClickSounds::read(std::span<StereoSample> target) {
    std::ranges::fill(target, StereoSample{});
    const auto length = static_cast<std::int64_t>(click_.size());
    const std::int64_t end = position_ + static_cast<std::int64_t>(target.size());
    while (firstSounding_ < starts_.size() && starts_[firstSounding_] + length <= position_)
        ++firstSounding_;
    for (std::size_t i = firstSounding_; i < starts_.size() && starts_[i] < end; ++i) {
        const std::int64_t last = std::min(starts_[i] + length, end);
        for (std::int64_t at = std::max(starts_[i], position_); at < last; ++at)
            target[static_cast<std::size_t>(at - position_)] +=
                click_[static_cast<std::size_t>(at - starts_[i])];
    }
    position_ = end;
}

std::int64_t ClickSounds::end() const {
    return starts_.empty() ? 0 : starts_.back() + static_cast<std::int64_t>(click_.size());
}

}  // namespace tessaloom
