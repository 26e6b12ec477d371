// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DesktopIconHider.h"

#include <QGuiApplication>
#include <QScreen>

#include "capture/OverlayWindow.h"

namespace tessaloom {
namespace {

QRect inPixels(const QScreen& screen) {
    return {screen.geometry().topLeft(), screen.size() * screen.devicePixelRatio()};
}

QImage partOf(const BgraView& wallpaper, const QRect& part) {
    if (wallpaper.empty()) return {};
    const QImage whole(wallpaper.pixels, wallpaper.width, wallpaper.height, wallpaper.stride,
                       QImage::Format_RGB32);
    return whole.copy(part);
}

}  // namespace

void DesktopIconHider::hide() {
    restore();
    const BgraImage wallpaper = platform_.wallpaper();
    for (QScreen* screen : QGuiApplication::screens()) {
        auto window = makeDesktopWindow("DesktopCover.qml", screen->size(),
                                        {{"image", partOf(wallpaper.view(), inPixels(*screen))}});
        window->setScreen(screen);
        window->setGeometry(screen->geometry());
        window->create();
        window->lower();  // where no window manager does it
        window->show();
        windows_.push_back(std::move(window));
    }
}

}  // namespace tessaloom
