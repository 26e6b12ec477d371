// SPDX-License-Identifier: GPL-3.0-or-later
#include "media/ColorHistogram.h"

#include "media/ColorCell.h"
#include "media/ColorPalette.h"

namespace tessaloom {

ColorHistogram::ColorHistogram() : cells_(colorCellCount) {}

void ColorHistogram::add(const BgraView& picture) {
    for (int y = 0; y < picture.height; ++y) {
        std::uint32_t color = colorAt(picture, 0, y);
        std::uint64_t count = 1;
        for (int x = 1; x < picture.width; ++x, ++count) {
            const std::uint32_t next = colorAt(picture, x, y);
            if (next == color) continue;
            add(color, count);
            color = next;
            count = 0;
        }
        add(color, count);
    }
}

void ColorHistogram::add(std::uint32_t color, std::uint64_t count) {
    const std::size_t index = colorCell(color);
    Cell& cell = cells_[index];
    if (cell.count == 0) used_.push_back(index);
    cell.count += count;
    for (std::size_t channel = 0; channel < 3; ++channel)
        cell.sums[channel] += count * (color >> (8 * channel) & 0xFF);
}

void ColorHistogram::clear() {
    for (const std::size_t index : used_)
        cells_[index] = {};
    used_.clear();
}

std::vector<ColorHistogram::Group> ColorHistogram::groups() const {
    std::vector<Group> groups;
    groups.reserve(used_.size());
    for (const std::size_t index : used_) {
        const Cell& cell = cells_[index];
        Group group{.count = static_cast<double>(cell.count), .mean = {}};
        for (std::size_t channel = 0; channel < 3; ++channel)
            group.mean[channel] = static_cast<double>(cell.sums[channel]) / group.count;
        groups.push_back(group);
    }
    return groups;
}

}  // namespace tessaloom
