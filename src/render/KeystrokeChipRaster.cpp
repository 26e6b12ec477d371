// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/KeystrokeChipRaster.h"

#include <QPainter>
#include <cmath>

#include "render/SystemFont.h"
#include "render/TextLine.h"

namespace tessaloom {
namespace {

constexpr int fontSize = 120;
constexpr double sidePadding = 90;
constexpr double verticalPadding = 54;
constexpr double cornerFraction = 0.28;
constexpr float plateAlpha = 0.72F;

}  // namespace

std::optional<OverlayRaster> keystrokeChipRaster(std::string_view text) {
    const TextLine label(text, systemFont(fontSize, QFont::DemiBold));
    const Size size{std::ceil(label.width() + 2 * sidePadding),
                    std::ceil(label.height() + 2 * verticalPadding)};
    return drawRaster(size, rasterScale, [&](QPainter& painter) {
        const double corner = cornerFraction * size.height;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(0, 0, 0, plateAlpha));
        painter.drawRoundedRect(QRectF(0, 0, size.width, size.height), corner, corner);
        painter.setPen(Qt::white);
        // The text's box stands on the lower padding.
        label.drawInBox(painter, {sidePadding, size.height - verticalPadding - label.height()});
    });
}

}  // namespace tessaloom
