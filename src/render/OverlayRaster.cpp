// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/OverlayRaster.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "base/Log.h"

namespace tessaloom {
namespace {

constexpr double largestSide = 16384;

std::optional<BgraImage> allocated(int width, int height) {
    try {
        return BgraImage(width, height);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

}  // namespace

std::optional<OverlayRaster> drawRaster(Size size, double scale, const std::function<void(QPainter&)>& draw) {
    const double width = std::ceil(size.width * scale);
    const double height = std::ceil(size.height * scale);
    if (!(std::min(width, height) >= 1) || !(std::max(width, height) <= largestSide)) {
        qCWarning(Log::renderer, "Raster skipped: %.0fx%.0f px is outside texture limits", width, height);
        return std::nullopt;
    }
    std::optional<BgraImage> pixels = allocated(static_cast<int>(width), static_cast<int>(height));
    QImage canvas;
    if (pixels) {
        canvas = QImage(pixels->row(0), pixels->width(), pixels->height(), pixels->stride(),
                        QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
    }
    QPainter painter;
    if (canvas.isNull() || !painter.begin(&canvas)) {
        qCWarning(Log::renderer, "Raster failed: could not create a %.0fx%.0f bitmap context", width, height);
        return std::nullopt;
    }
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    draw(painter);
    painter.end();
    return OverlayRaster{std::move(*pixels), size};
}

void logRasterNotKept(int width, int height) {
    qCWarning(Log::renderer, "Raster failed: could not allocate a %dx%d texture", width, height);
}

}  // namespace tessaloom
