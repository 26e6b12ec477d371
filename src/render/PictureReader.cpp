// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/PictureReader.h"

#include <algorithm>

namespace tessaloom {

const std::uint8_t* mixedRow(BgraView picture, TexelPosition position, PixelSpan texels,
                             RowScratch& scratch) {
    const std::uint8_t* upper = picture.row(position.index);
    if (position.weight == 0 && texels.last <= picture.width) return upper;
    const std::uint8_t* lower = picture.row(std::min(position.index + 1, picture.height - 1));
    const int last = std::min(texels.last, picture.width);
    const std::ptrdiff_t start = static_cast<std::ptrdiff_t>(texels.first) * 4;
    const std::ptrdiff_t end = static_cast<std::ptrdiff_t>(last) * 4;
    std::uint8_t* mixed = scratch.mixed.data();
    PixelKernels::mixRows(upper + start, lower + start, position.weight, mixed + start,
                          static_cast<std::size_t>(end - start));
    return mixed;
}

void PictureReader::prepare(BgraView picture, const AxisMapping& across, const AxisMapping& down,
                            PixelSpan columns) {
    picture_ = picture;
    down_ = down;
    columns_.prepare(across, picture.width, columns);
}

void PictureReader::readRow(int y, PixelSpan span, RowScratch& scratch, std::uint8_t* out) const {
    if (span.empty()) return;
    const TexelPosition position =
        texelPosition(fixedTexel(down_.fractionAt(y), picture_.height), picture_.height);
    columns_.resample(mixedRow(picture_, position, columns_.texels(span), scratch), span, out);
}

}  // namespace tessaloom
