// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureLevels.h"

#include <utility>

namespace tessaloom {
namespace {

constexpr int smallestSide = 16;

BgraImage halved(const BgraImage& full) {
    BgraImage half((full.width() + 1) / 2, (full.height() + 1) / 2);
    for (int y = 0; y < half.height(); ++y) {
        const std::uint8_t* upper = full.row(2 * y);
        const std::uint8_t* lower = full.row(std::min(2 * y + 1, full.height() - 1));
        std::uint8_t* out = half.row(y);
        for (int x = 0; x < half.width(); ++x) {
            const int left = 8 * x;
            const int right = std::min(2 * x + 1, full.width() - 1) * 4;
            for (int channel = 0; channel < 4; ++channel) {
                const int sum = upper[left + channel] + upper[right + channel] + lower[left + channel] +
                                lower[right + channel];
                *out++ = static_cast<std::uint8_t>((sum + 2) / 4);
            }
        }
    }
    return half;
}

}  // namespace

PictureLevels::PictureLevels(BgraImage full) {
    levels_.push_back(std::move(full));
    while (std::min(levels_.back().width(), levels_.back().height()) >= 2 * smallestSide) {
        levels_.push_back(halved(levels_.back()));
    }
}

}  // namespace tessaloom
