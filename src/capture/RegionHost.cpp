// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/RegionHost.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPixmap>
#include <QQuickItem>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "capture/CaptureSource.h"
#include "capture/DesktopPixels.h"
#include "capture/OverlayWindow.h"

namespace tessaloom {
std::optional<Rect> selectedArea(QPointF start, QPointF current) {
    const Rect area{std::min(start.x(), current.x()), std::min(start.y(), current.y()),
                    std::abs(current.x() - start.x()), std::abs(current.y() - start.y())};
    if (!(area.width > smallestRegionSide && area.height > smallestRegionSide)) return std::nullopt;
    return area;
}

RegionHost::RegionHost(double pixelsPerPoint, Done done)
    : pixelsPerPoint_(pixelsPerPoint), done_(std::move(done)) {
    for (QScreen* screen : QGuiApplication::screens())
        cover(screen);
    // For Escape: the application that has the focus keeps it, and doesn't see the key.
    if (!windows_.empty()) windows_.front()->setKeyboardGrabEnabled(true);
}

/// The view shows a still of its screen: without a compositing manager nothing is see-through.
void RegionHost::cover(QScreen* screen) {
    const QImage still = screen->grabWindow(0).toImage();
    auto window = makeOverlayWindow("RegionView.qml", screen->size(), {{"image", still}}, {});
    window->setScreen(screen);
    window->setGeometry(screen->geometry());
    window->installEventFilter(this);
    connect(window->rootObject(), SIGNAL(released(QPointF, QPointF)), this, SLOT(released(QPointF, QPointF)));
    window->show();
    window->raise();
    windows_.push_back(std::move(window));
}

/// Qt's points and a recording's may be of different sizes, as when the user has Qt's windows enlarged: only
/// pixels are the same to both.
Rect RegionHost::inGlobalPoints(const Rect& area, const QScreen& screen) const {
    const QPoint corner = screen.geometry().topLeft();
    const Rect pixels = inDesktopPixels({corner.x() + area.x, corner.y() + area.y, area.width, area.height},
                                        corner, screen.devicePixelRatio());
    return {pixels.x / pixelsPerPoint_, pixels.y / pixelsPerPoint_, pixels.width / pixelsPerPoint_,
            pixels.height / pixelsPerPoint_};
}

bool RegionHost::eventFilter(QObject* window, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(window, event);
    if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) finish(std::nullopt);
    return true;
}

void RegionHost::released(const QPointF& from, const QPointF& to) {
    const auto* view = qobject_cast<QQuickItem*>(sender());
    const auto area = selectedArea(from, to);
    finish(area ? std::optional(inGlobalPoints(*area, *view->window()->screen())) : std::nullopt);
}

void RegionHost::finish(std::optional<Rect> area) {
    if (std::exchange(finished_, true)) return;
    for (auto& window : windows_) {
        window->setKeyboardGrabEnabled(false);
        window->hide();
        window.release()->deleteLater();  // an event of its own may have led here
    }
    windows_.clear();
    done_(area);
}

}  // namespace tessaloom
