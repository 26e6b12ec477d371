// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PictureScaling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tessaloom {
namespace {

constexpr int bytesPerPixel = 4;
constexpr int weightBits = 8;

/// The two neighbours that make up a target pixel along one axis, and the later one's share of it.
struct Neighbours {
    int first = 0;
    int second = 0;
    int secondWeight = 0;  ///< of 1 << weightBits
};

/// `length` target pixels out of the middle of `sourceLength`, `step` of them for each.
std::vector<Neighbours> neighbours(int length, int sourceLength, double step) {
    const double begin = (sourceLength - length * step) / 2;
    std::vector<Neighbours> all;
    for (int i = 0; i < length; ++i) {
        const double place = std::clamp(begin + (i + 0.5) * step - 0.5, 0.0, sourceLength - 1.0);
        const int first = static_cast<int>(place);
        all.push_back({first, std::min(first + 1, sourceLength - 1),
                       static_cast<int>(std::lround((place - first) * (1 << weightBits)))});
    }
    return all;
}

int mix(int first, int second, int secondWeight) {
    return (first << weightBits) + (second - first) * secondWeight;
}

}  // namespace

void scaleToFill(const BgraView& source, BgraImage& target) {
    const double step = std::min(static_cast<double>(source.width) / target.width(),
                                 static_cast<double>(source.height) / target.height());
    const auto columns = neighbours(target.width(), source.width, step);
    const auto rows = neighbours(target.height(), source.height, step);
    constexpr int half = 1 << (2 * weightBits - 1);
    for (int y = 0; y < target.height(); ++y) {
        const Neighbours& row = rows[static_cast<std::size_t>(y)];
        const std::uint8_t* above = source.row(row.first);
        const std::uint8_t* below = source.row(row.second);
        std::uint8_t* to = target.row(y);
        for (const Neighbours& column : columns) {
            const int left = column.first * bytesPerPixel;
            const int right = column.second * bytesPerPixel;
            for (int channel = 0; channel < bytesPerPixel; ++channel, ++to) {
                const int top = mix(above[left + channel], above[right + channel], column.secondWeight);
                const int bottom = mix(below[left + channel], below[right + channel], column.secondWeight);
                *to = static_cast<std::uint8_t>((mix(top, bottom, row.secondWeight) + half) >>
                                                (2 * weightBits));
            }
        }
    }
}

}  // namespace tessaloom
