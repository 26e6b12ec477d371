// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/DitheredPalette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tessaloom {
namespace {

/// A colour that misses by less, squared, makes no band that is seen: three levels.
constexpr int leastError = 9;
/// A pattern is seen too: how much its variance counts against the error of the mean.
constexpr float varianceWeight = 0.25F;

constexpr int patternBits = 3;
constexpr std::size_t patternSide = std::size_t{1} << patternBits;
using Pattern = std::array<std::array<float, patternSide>, patternSide>;

/// Bayer's matrix: thresholds between 0 and 1 that lie far apart where they are near in value. It repeats
/// itself, so that it compresses well.
constexpr Pattern bayerPattern() {
    Pattern pattern{};
    for (std::size_t y = 0; y < patternSide; ++y)
        for (std::size_t x = 0; x < patternSide; ++x) {
            std::size_t rank = 0;
            for (int bit = 0; bit < patternBits; ++bit)
                rank = rank << 2 | ((x ^ y) >> bit & 1) << 1 | (y >> bit & 1);
            pattern[y][x] = (static_cast<float>(rank) + 0.5F) / (patternSide * patternSide);
        }
    return pattern;
}

constexpr Pattern thresholds = bayerPattern();

using Step = std::array<float, 3>;

Step stepBetween(std::uint32_t from, std::uint32_t to) {
    Step step{};
    for (std::size_t i = 0; i < 3; ++i)
        step[i] = static_cast<float>(to >> (8 * i) & 0xFF) - static_cast<float>(from >> (8 * i) & 0xFF);
    return step;
}

float product(const Step& a, const Step& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// The colour a part `along` of the way, which may be a little before or behind it.
std::uint32_t colorBetween(std::uint32_t from, std::uint32_t to, float along) {
    const Step step = stepBetween(from, to);
    std::uint32_t color = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const float value = static_cast<float>(from >> (8 * i) & 0xFF) + along * step[i];
        color |= static_cast<std::uint32_t>(std::clamp(std::lround(value), 0L, 255L)) << (8 * i);
    }
    return color;
}

}  // namespace

DitheredPalette::DitheredPalette(ColorPalette palette, GradientColors gradients)
    : palette_(std::move(palette)), gradients_(std::move(gradients)) {}

DitheredPalette::Choice DitheredPalette::choose(std::uint32_t color, int x, int y) {
    if (!gradients_.contains(color)) return {palette_.nearest(color), color};
    const Mix mix = mixes_.of(color, [this](std::uint32_t unknown) { return mixFor(unknown); });
    if (mix.share <= 0) return {mix.first, color};
    const float threshold =
        thresholds[static_cast<std::size_t>(y) % patternSide][static_cast<std::size_t>(x) % patternSide];
    const float along = mix.share + 0.5F - threshold;
    return {along > 0.5F ? mix.second : mix.first,
            colorBetween(palette_.colors()[mix.first], palette_.colors()[mix.second], along)};
}

/// The two colours and shares with the least squared error of the mean and weighted variance: a parabola in
/// the share for each second colour.
DitheredPalette::Mix DitheredPalette::mixFor(std::uint32_t color) {
    const auto colors = palette_.colors();
    const std::uint8_t first = palette_.nearest(color);
    Mix best{.first = first, .second = first};
    if (squaredDistance(color, colors[first]) < leastError) return best;
    const Step missed = stepBetween(colors[first], color);
    float most = 0;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const Step step = stepBetween(colors[first], colors[i]);
        const float length = product(step, step);
        const float gain = product(step, missed) - varianceWeight / 2 * length;
        if (gain <= 0 || gain * gain <= most * length) continue;
        most = gain * gain / length;
        best.second = static_cast<std::uint8_t>(i);
        best.share = gain / ((1 - varianceWeight) * length);
    }
    return best;
}

}  // namespace tessaloom
