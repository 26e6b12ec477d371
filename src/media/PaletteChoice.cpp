// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/PaletteChoice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

namespace tessaloom {
namespace {

constexpr int refinements = 4;
/// Boxes that spread less don't need a second colour.
constexpr double leastError = 0.5;

using Group = ColorHistogram::Group;
using Channels = std::array<double, 3>;

/// Some neighbouring groups and how far their colours spread.
struct Box {
    std::span<Group> groups;
    double count = 0;
    Channels mean{};
    Channels spread{};

    explicit Box(std::span<Group> members) : groups(members) {
        Channels squares{};
        for (const Group& group : groups) {
            count += group.count;
            for (std::size_t i = 0; i < 3; ++i) {
                mean[i] += group.count * group.mean[i];
                squares[i] += group.count * group.mean[i] * group.mean[i];
            }
        }
        for (std::size_t i = 0; i < 3; ++i) {
            mean[i] /= count;
            spread[i] = squares[i] - count * mean[i] * mean[i];
        }
    }

    double error() const { return groups.size() < 2 ? 0 : spread[0] + spread[1] + spread[2]; }

    std::pair<Box, Box> split() const {
        const auto axis = static_cast<std::size_t>(std::ranges::max_element(spread) - spread.begin());
        const auto upper =
            std::ranges::partition(groups, [&](const Group& group) { return group.mean[axis] < mean[axis]; });
        const std::size_t lower = groups.size() - upper.size();
        return {Box(groups.first(lower)), Box(groups.subspan(lower))};
    }
};

std::vector<Channels> splitColors(std::span<Group> groups, std::size_t size) {
    std::vector<Box> boxes{Box(groups)};
    const auto byError = [](const Box& a, const Box& b) { return a.error() < b.error(); };
    while (boxes.size() < size && boxes.front().error() > leastError) {
        std::ranges::pop_heap(boxes, byError);
        const auto [lower, upper] = boxes.back().split();
        boxes.back() = lower;
        std::ranges::push_heap(boxes, byError);
        boxes.push_back(upper);
        std::ranges::push_heap(boxes, byError);
    }
    std::vector<Channels> colors;
    for (const Box& box : boxes)
        colors.push_back(box.mean);
    return colors;
}

std::size_t nearest(const std::vector<Channels>& colors, const Group& group) {
    std::size_t best = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < colors.size(); ++i) {
        double distance = 0;
        for (std::size_t c = 0; c < 3; ++c)
            distance += (colors[i][c] - group.mean[c]) * (colors[i][c] - group.mean[c]);
        if (distance < least) {
            least = distance;
            best = i;
        }
    }
    return best;
}

/// One step towards the least squared error (Lloyd's).
void refine(std::vector<Channels>& colors, std::span<const Group> groups) {
    std::vector<Channels> sums(colors.size());
    std::vector<double> counts(colors.size());
    for (const Group& group : groups) {
        const std::size_t color = nearest(colors, group);
        counts[color] += group.count;
        for (std::size_t c = 0; c < 3; ++c)
            sums[color][c] += group.count * group.mean[c];
    }
    for (std::size_t i = 0; i < colors.size(); ++i)
        for (std::size_t c = 0; c < 3; ++c)
            if (counts[i] > 0) colors[i][c] = sums[i][c] / counts[i];
}

std::uint32_t packed(const Channels& color) {
    const auto byte = [](double value) { return static_cast<std::uint32_t>(std::lround(value)); };
    return byte(color[2]) << 16 | byte(color[1]) << 8 | byte(color[0]);
}

}  // namespace

std::vector<std::uint32_t> choosePalette(std::vector<Group> groups, std::size_t size) {
    if (groups.empty()) return {0};
    auto colors = splitColors(groups, size);
    for (int i = 0; i < refinements; ++i)
        refine(colors, groups);
    std::vector<std::uint32_t> palette;
    for (const Channels& color : colors)
        palette.push_back(packed(color));
    return palette;
}

}  // namespace tessaloom
