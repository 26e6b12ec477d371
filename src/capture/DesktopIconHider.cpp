// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DesktopIconHider.h"

#include <QGuiApplication>
#include <QScreen>

#include "capture/OverlayWindow.h"

namespace tessaloom {
namespace {

DesktopScreen describe(const QScreen& screen, int number) {
    const QPoint corner = screen.geometry().topLeft();
    const QSize size = screen.size() * screen.devicePixelRatio();
    return {screen.name().toStdString(), number, {corner.x(), corner.y(), size.width(), size.height()}};
}

/// Without the fourth byte, which in a screen's pixels means nothing.
QImage opaqueCopy(const BgraView& picture) {
    if (picture.empty()) return {};
    const QImage image(picture.pixels, picture.width, picture.height, picture.stride, QImage::Format_RGB32);
    return image.convertToFormat(QImage::Format_RGB888);
}

}  // namespace

void DesktopIconHider::hide() {
    restore();
    int number = 0;  // Qt lists the primary screen first
    for (QScreen* screen : QGuiApplication::screens()) {
        const BgraImage wallpaper = platform_.wallpaper(describe(*screen, number++));
        auto window =
            makeDesktopWindow("DesktopCover.qml", screen->size(), {{"image", opaqueCopy(wallpaper.view())}});
        window->setScreen(screen);
        window->setGeometry(screen->geometry());
        window->create();
        window->lower();  // where no window manager does it
        window->show();
        windows_.push_back(std::move(window));
    }
}

}  // namespace tessaloom
