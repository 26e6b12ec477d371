// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickView>
#include <QVariantMap>
#include <memory>

namespace tessaloom {

/// A see-through window above all others, on every desktop, that shows a view of src/capture/qml, filled by
/// it. It has no frame, never takes the focus, and lets the pointer through unless `flags` lack
/// Qt::WindowTransparentForInput. Hidden at first. `properties` are the view's required ones.
std::unique_ptr<QQuickView> makeOverlayWindow(const QString& view, QSize size, const QVariantMap& properties,
                                              Qt::WindowFlags flags = Qt::WindowTransparentForInput);

/// A window as large, that lies behind all windows but in front of the desktop's icons, and takes no input.
std::unique_ptr<QQuickView> makeDesktopWindow(const QString& view, QSize size, const QVariantMap& properties);

/// The rectangle with rounded corners, to be a window's mask: without a compositing manager nothing is
/// see-through, and what lies outside a round view would be black.
QRegion roundedRegion(const QRect& rect, double radius);

}  // namespace tessaloom
