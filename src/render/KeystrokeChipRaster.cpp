// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/KeystrokeChipRaster.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <cmath>

#include "render/SystemFont.h"

namespace tessaloom {
namespace {

constexpr int fontSize = 120;
constexpr double sidePadding = 90;
constexpr double verticalPadding = 54;
constexpr double cornerFraction = 0.28;
constexpr float plateAlpha = 0.72F;

}  // namespace

std::optional<OverlayRaster> keystrokeChipRaster(std::string_view text) {
    const QString label = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    const QFont font = systemFont(fontSize, QFont::DemiBold);
    const QFontMetricsF metrics(font);
    const Size size{std::ceil(metrics.horizontalAdvance(label) + 2 * sidePadding),
                    std::ceil(metrics.height() + 2 * verticalPadding)};
    return drawRaster(size, rasterScale, [&](QPainter& painter) {
        const double corner = cornerFraction * size.height;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgbF(0, 0, 0, plateAlpha));
        painter.drawRoundedRect(QRectF(0, 0, size.width, size.height), corner, corner);
        painter.setFont(font);
        painter.setPen(Qt::white);
        // The text's box stands on the lower padding.
        painter.drawText(QPointF(sidePadding, size.height - verticalPadding - metrics.descent()), label);
    });
}

}  // namespace tessaloom
