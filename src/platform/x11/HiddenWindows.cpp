// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/HiddenWindows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <cmath>

#include "base/HostClock.h"
#include "capture/DesktopPixels.h"

namespace tessaloom {
namespace {

/// With its frame, if it can have one: asking for that waits for the server, which may hang.
QRect placeOf(const QWindow& window) {
    return window.flags().testFlag(Qt::FramelessWindowHint) ? window.geometry() : window.frameGeometry();
}

/// With pixels that it covers in part.
PixelRect areaOf(const QWindow& window) {
    const QRect frame = placeOf(window);
    const QPoint corner = window.screen() != nullptr ? window.screen()->geometry().topLeft() : QPoint();
    const Rect area =
        inDesktopPixels({static_cast<double>(frame.x()), static_cast<double>(frame.y()),
                         static_cast<double>(frame.width()), static_cast<double>(frame.height())},
                        corner, window.devicePixelRatio());
    const int left = static_cast<int>(std::floor(area.minX()));
    const int top = static_cast<int>(std::floor(area.minY()));
    return {left, top, static_cast<int>(std::ceil(area.maxX())) - left,
            static_cast<int>(std::ceil(area.maxY())) - top};
}

}  // namespace

HiddenWindows::HiddenWindows() {
    if (qGuiApp != nullptr) qGuiApp->installEventFilter(this);
}

std::vector<LeftArea> HiddenWindows::areas() {
    const double now = HostClock::seconds();
    std::erase_if(areas_, [&](const LeftArea& left) { return left.isClear(now); });
    return areas_;
}

bool HiddenWindows::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Hide && object->isWindowType()) {
        areas();  // drops the old ones
        areas_.push_back({areaOf(*static_cast<const QWindow*>(object)), HostClock::seconds()});
    }
    return QObject::eventFilter(object, event);
}

}  // namespace tessaloom
