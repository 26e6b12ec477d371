// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/OverlayRaster.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "base/Log.h"

namespace tessaloom {
namespace {

constexpr double largestSide = 16384;

}  // namespace

std::optional<OverlayRaster> drawRaster(Size size, double scale, const std::function<void(QPainter&)>& draw) {
    const double width = std::ceil(size.width * scale);
    const double height = std::ceil(size.height * scale);
    if (!(std::min(width, height) >= 1) || !(std::max(width, height) <= largestSide)) {
        qCWarning(Log::renderer, "Raster skipped: %.0fx%.0f px is outside texture limits", width, height);
        return std::nullopt;
    }
    OverlayRaster raster{BgraImage(static_cast<int>(width), static_cast<int>(height)), size};
    QImage canvas(raster.pixels.row(0), raster.pixels.width(), raster.pixels.height(), raster.pixels.stride(),
                  QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter;
    if (!painter.begin(&canvas)) {
        qCWarning(Log::renderer, "Raster failed: could not create a %.0fx%.0f bitmap context", width, height);
        return std::nullopt;
    }
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    draw(painter);
    return raster;
}

}  // namespace tessaloom
