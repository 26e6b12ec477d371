// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/OverlayWindow.h"

#include <QQmlError>
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <vector>

#include "capture/PictureItem.h"

namespace tessaloom {
namespace {

/// The window manager has no say: it would place, frame and focus the window.
constexpr Qt::WindowFlags overlayFlags = Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                                         Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus;

constexpr Qt::WindowFlags desktopFlags =
    Qt::Window | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowTransparentForInput;

/// Of X11's window types, as Qt numbers them in this property of a window.
constexpr const char* windowTypeProperty = "_q_xcb_wm_window_type";
constexpr int desktopType = 2;

void loadView(QQuickView& window, const QString& view, const QVariantMap& properties) {
    static const int registered = qmlRegisterType<PictureItem>("Tessaloom.Capture", 1, 0, "PictureItem");
    Q_UNUSED(registered);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.setInitialProperties(properties);
    window.setSource(QUrl("qrc:/tessaloom/capture/" + view));
    if (window.status() != QQuickView::Ready)
        throw std::runtime_error(window.errors().value(0).toString().toStdString());
}

}  // namespace

std::unique_ptr<QQuickView> makeOverlayWindow(const QString& view, QSize size, const QVariantMap& properties,
                                              Qt::WindowFlags flags) {
    auto window = std::make_unique<QQuickView>();
    QSurfaceFormat format = window->format();
    format.setAlphaBufferSize(8);
    window->setFormat(format);
    window->setColor(Qt::transparent);
    window->setFlags(overlayFlags | flags);
    window->resize(size);
    loadView(*window, view, properties);
    return window;
}

std::unique_ptr<QQuickView> makeDesktopWindow(const QString& view, QSize size,
                                              const QVariantMap& properties) {
    auto window = std::make_unique<QQuickView>();
    window->setFlags(desktopFlags);
    window->setProperty(windowTypeProperty, desktopType);
    window->resize(size);
    loadView(*window, view, properties);
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
