// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/GradientColors.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "media/ColorCell.h"
#include "media/ColorPalette.h"

namespace tessaloom {
namespace {

/// One pixel of so many is looked at, across and down.
constexpr int sampleStep = 4;
/// How far from it, in pixels, a gradient is looked for, and how many levels of 255 it has risen by then.
constexpr int mostReach = 16;
constexpr int leastRise = 2;
/// A slope that changes by more levels from one pixel to the next is an edge, or noise.
constexpr int mostBend = 2;

/// Whether a line of three pixels, `step` bytes apart, bends much at `middle`.
bool bends(const std::uint8_t* middle, std::ptrdiff_t step) {
    for (int channel = 0; channel < 3; ++channel) {
        const std::uint8_t* value = middle + channel;
        if (std::abs(value[-step] - 2 * value[0] + value[step]) > mostBend) return true;
    }
    return false;
}

bool isRise(const std::uint8_t* from, const std::uint8_t* to) {
    for (int channel = 0; channel < 3; ++channel)
        if (std::abs(to[channel] - from[channel]) >= leastRise) return true;
    return false;
}

bool isSame(const std::uint8_t* a, const std::uint8_t* b) {
    return std::memcmp(a, b, 4) == 0;
}

/// Whether the colour changes softly from `pixel` on, within `reach` steps.
bool risesAlong(const std::uint8_t* pixel, std::ptrdiff_t step, int reach) {
    const std::uint8_t* place = pixel;
    for (int i = 0; i < reach; ++i, place += step) {
        const std::uint8_t* next = place + step;
        if (isSame(place, next) && isSame(place, place - step)) continue;
        if (bends(place, step)) return false;
        if (isRise(pixel, next)) return true;
    }
    return false;
}

/// Of a pixel that isn't at the border. To the right and down is enough: a gradient goes on there, too.
bool isInGradient(const BgraView& picture, int x, int y) {
    const std::uint8_t* pixel = picture.row(y) + std::ptrdiff_t{4} * x;
    if (bends(pixel, 4) || bends(pixel, picture.stride)) return false;
    return risesAlong(pixel, 4, std::min(mostReach, picture.width - 1 - x)) ||
           risesAlong(pixel, picture.stride, std::min(mostReach, picture.height - 1 - y));
}

}  // namespace

GradientColors::GradientColors() : lead_(colorCellCount) {}

void GradientColors::add(const BgraView& picture) {
    for (int y = sampleStep / 2; y < picture.height - 1; y += sampleStep)
        for (int x = sampleStep / 2; x < picture.width - 1; x += sampleStep)
            lead_[colorCell(colorAt(picture, x, y))] += isInGradient(picture, x, y) ? 1 : -1;
}

void GradientColors::clear() {
    std::ranges::fill(lead_, 0);
}

bool GradientColors::contains(std::uint32_t color) const {
    return lead_[colorCell(color)] > 0;
}

}  // namespace tessaloom
