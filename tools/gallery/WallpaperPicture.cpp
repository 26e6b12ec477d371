// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/WallpaperPicture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <array>
#include <cmath>

namespace tessaloom::gallery {
namespace {

constexpr int width = 1920;
constexpr int height = 1080;

/// A row of hills; lengths in pixels.
struct Ridge {
    double top;
    double swing;
    double wavelength;
    double phase;
    QColor color;
};

constexpr std::array ridges{
    Ridge{610, 46, 620, 0.4, {0x8E, 0x6A, 0x9E}}, Ridge{700, 62, 880, 2.1, {0x67, 0x54, 0x91}},
    Ridge{810, 54, 540, 4.0, {0x46, 0x42, 0x7B}}, Ridge{930, 70, 990, 1.2, {0x2A, 0x2F, 0x5C}}};

void paintSky(QPainter& painter) {
    QLinearGradient sky(0, 0, 0, 700);
    sky.setColorAt(0, QColor(0x2F, 0x4B, 0x8C));
    sky.setColorAt(0.55, QColor(0xC9, 0x7F, 0xA6));
    sky.setColorAt(1, QColor(0xFB, 0xC7, 0x8D));
    painter.fillRect(0, 0, width, height, sky);
    QRadialGradient sun(QPointF(1340, 520), 330);
    sun.setColorAt(0, QColor(255, 244, 214));
    sun.setColorAt(0.24, QColor(255, 236, 190));
    sun.setColorAt(0.27, QColor(255, 220, 160, 120));
    sun.setColorAt(1, QColor(255, 220, 160, 0));
    painter.fillRect(0, 0, width, height, sun);
}

QPainterPath outlineOf(const Ridge& ridge) {
    QPainterPath path(QPointF(0, height));
    for (int x = 0; x <= width; x += 8) {
        const double angle = 6.2832 * x / ridge.wavelength + ridge.phase;
        path.lineTo(x, ridge.top - ridge.swing * (std::sin(angle) + 0.3 * std::sin(2.7 * angle)));
    }
    path.lineTo(width, height);
    return path;
}

}  // namespace

QImage wallpaperPicture() {
    QImage picture(width, height, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSky(painter);
    for (const Ridge& ridge : ridges)
        painter.fillPath(outlineOf(ridge), ridge.color);
    return picture;
}

}  // namespace tessaloom::gallery
