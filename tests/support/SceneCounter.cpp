// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/SceneCounter.h"

#include <cmath>

#include "demo-scene/CounterCode.h"

namespace tessaloom::test {
namespace {

namespace CounterCode = demo::CounterCode;

// BT.709 luma, 0 to 255.
double lumaAt(const BgraView& picture, int x, int y) {
    const std::uint8_t* pixel = picture.row(y) + std::ptrdiff_t{x} * 4;
    return 0.0722 * pixel[0] + 0.7152 * pixel[1] + 0.2126 * pixel[2];
}

// The mean over the pixels whose centres lie in `area`.
std::optional<double> meanLuma(const BgraView& picture, const QRectF& area) {
    double sum = 0;
    int count = 0;
    for (int y = static_cast<int>(std::ceil(area.top() - 0.5)); y + 0.5 <= area.bottom(); ++y) {
        for (int x = static_cast<int>(std::ceil(area.left() - 0.5)); x + 0.5 <= area.right(); ++x) {
            sum += lumaAt(picture, x, y);
            ++count;
        }
    }
    if (count == 0) return std::nullopt;
    return sum / count;
}

std::optional<bool> readCell(const BgraView& picture, const QRectF& cell) {
    // Edges are blurred by scaling and by the encoder: only the middle counts.
    const QRectF middle(cell.x() + cell.width() / 4, cell.y() + cell.height() / 4, cell.width() / 2,
                        cell.height() / 2);
    constexpr double darkest = 96;
    constexpr double lightest = 160;
    const auto luma = meanLuma(picture, middle);
    if (!luma || (*luma > darkest && *luma < lightest)) return std::nullopt;
    return *luma >= lightest;
}

}  // namespace

std::optional<unsigned> readSceneCounter(const BgraView& picture, const QRectF& strip) {
    if (!QRectF(0, 0, picture.width, picture.height).contains(strip)) return std::nullopt;
    const double width = strip.width() / CounterCode::cellCount;
    CounterCode::Cells cells{};
    for (std::size_t index = 0; index < cells.size(); ++index) {
        const auto light = readCell(picture, QRectF(strip.x() + static_cast<double>(index) * width, strip.y(),
                                                    width, strip.height()));
        if (!light) return std::nullopt;
        cells[index] = *light;
    }
    return CounterCode::decode(cells);
}

}  // namespace tessaloom::test
