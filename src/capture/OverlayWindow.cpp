// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/OverlayWindow.h"

#include <QQmlError>
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

namespace tessaloom {
namespace {

/// The window manager has no say: it would place, frame and focus the window.
constexpr Qt::WindowFlags overlayFlags = Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                                         Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus;

}  // namespace

std::unique_ptr<QQuickView> makeOverlayWindow(const QString& view, QSize size, const QVariantMap& properties,
                                              Qt::WindowFlags flags) {
    auto window = std::make_unique<QQuickView>();
    QSurfaceFormat format = window->format();
    format.setAlphaBufferSize(8);
    window->setFormat(format);
    window->setColor(Qt::transparent);
    window->setFlags(overlayFlags | flags);
    window->setResizeMode(QQuickView::SizeRootObjectToView);
    window->resize(size);
    window->setInitialProperties(properties);
    window->setSource(QUrl("qrc:/tessaloom/capture/" + view));
    if (window->status() != QQuickView::Ready)
        throw std::runtime_error(window->errors().value(0).toString().toStdString());
    return window;
}

QRegion roundedRegion(const QRect& rect, double radius) {
    std::vector<QRect> rows;
    for (int y = 0; y < rect.height(); ++y) {
        const double center = y + 0.5;
        const double intoCorner = std::max({0.0, radius - center, center - (rect.height() - radius)});
        const double inset = radius - std::sqrt(std::max(0.0, radius * radius - intoCorner * intoCorner));
        const int left = static_cast<int>(inset);
        rows.emplace_back(rect.left() + left, rect.top() + y, rect.width() - 2 * left, 1);
    }
    QRegion region;
    region.setRects(rows.data(), static_cast<int>(rows.size()));
    return region;
}

}  // namespace tessaloom
