// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/ColumnTable.h"

#include <algorithm>
#include <cstring>

namespace tessaloom {

void ColumnTable::prepare(const AxisMapping& mapping, int pictureWidth, PixelSpan columns) {
    if (mapping == mapping_ && pictureWidth == pictureWidth_ && columns == columns_) return;
    mapping_ = mapping;
    pictureWidth_ = pictureWidth;
    columns_ = columns;
    const auto count = static_cast<std::size_t>(columns.length());
    texels_.resize(count);
    weights_.resize(count * 4);
    const std::int64_t whole = std::int64_t{1} << PixelKernels::weightBits;
    const std::int64_t start = fixedTexel(mapping.fractionAt(columns.first), pictureWidth);
    bool unscaled = start % whole == 0;
    std::int64_t expected = start;
    for (std::size_t i = 0; i < count; ++i, expected += whole) {
        const double fraction = mapping.fractionAt(columns.first + static_cast<int>(i));
        const std::int64_t fixed = fixedTexel(fraction, pictureWidth);
        unscaled = unscaled && fixed == expected;
        const TexelPosition position = texelPosition(fixed, pictureWidth);
        texels_[i] = position.index;
        std::fill_n(weights_.data() + i * 4, 4, position.weight);
    }
    unscaledStart_.reset();
    if (unscaled) unscaledStart_ = start / whole;
}

PixelSpan ColumnTable::texels(PixelSpan span) const {
    const auto [least, greatest] = std::minmax(texels_[slot(span.first)], texels_[slot(span.last - 1)]);
    return {least, greatest + 2};
}

void ColumnTable::resample(const std::uint8_t* row, PixelSpan span, std::uint8_t* out) const {
    const std::size_t first = slot(span.first);
    const auto count = static_cast<std::size_t>(span.length());
    if (unscaledStart_) {
        const auto texel = static_cast<std::size_t>(*unscaledStart_) + first;
        std::memcpy(out, row + texel * 4, count * 4);
        return;
    }
    PixelKernels::resampleRow(row, texels_.data() + first, weights_.data() + first * 4, out, count);
}

}  // namespace tessaloom
