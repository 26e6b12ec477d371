// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/Icons.h"

#include <QPainterPath>
#include <QPolygonF>
#include <cmath>
#include <numbers>

namespace tessaloom::demo {
namespace {

// Coordinates count from the middle of the square, -12 to 12.

QPainterPath lines(const QPolygonF& points) {
    QPainterPath path;
    path.addPolygon(points);
    return path;
}

QPainterPath sun() {
    QPainterPath path;
    path.addEllipse(QPointF(0, 0), 4, 4);
    for (int ray = 0; ray < 8; ++ray) {
        const double angle = ray * std::numbers::pi / 4;
        const QPointF direction(std::cos(angle), std::sin(angle));
        path.moveTo(direction * 6.8);
        path.lineTo(direction * 9);
    }
    return path;
}

QPainterPath pin() {
    QPainterPath path;
    path.moveTo(0, 9.5);
    path.cubicTo(-3, 5, -7, 2, -7, -2.5);
    path.arcTo(QRectF(-7, -9.5, 14, 14), 180, -180);
    path.cubicTo(7, 2, 3, 5, 0, 9.5);
    path.addEllipse(QPointF(0, -2.5), 2.6, 2.6);
    return path;
}

QPainterPath person() {
    QPainterPath path;
    path.addEllipse(QPointF(0, -4), 4, 4);
    path.moveTo(-8, 8.5);
    path.cubicTo(-8, 0.5, 8, 0.5, 8, 8.5);
    return path;
}

QPainterPath page() {
    QPainterPath path = lines({{2.5, -9}, {-6.5, -9}, {-6.5, 9}, {6.5, 9}, {6.5, -5}, {2.5, -9}});
    path.addPath(lines({{-3, 0}, {3, 0}}));
    path.addPath(lines({{-3, 4.5}, {3, 4.5}}));
    return path;
}

QPainterPath bars() {
    QPainterPath path = lines({{-7, 8}, {-7, 1}});
    path.addPath(lines({{0, 8}, {0, -8}}));
    path.addPath(lines({{7, 8}, {7, -3}}));
    return path;
}

QPainterPath magnifier() {
    QPainterPath path;
    path.addEllipse(QPointF(-1.5, -1.5), 6, 6);
    path.moveTo(3, 3);
    path.lineTo(8, 8);
    return path;
}

QPainterPath bell() {
    QPainterPath path;
    path.moveTo(-7, 5);
    path.cubicTo(-4, 2, -6, -8, 0, -8);
    path.cubicTo(6, -8, 4, 2, 7, 5);
    path.closeSubpath();
    path.moveTo(-2.2, 7.6);
    path.cubicTo(-1, 9.4, 1, 9.4, 2.2, 7.6);
    return path;
}

QPainterPath leaf() {
    QPainterPath path;
    path.moveTo(-6, 6);
    path.cubicTo(-9, -4, -2, -9, 8, -8);
    path.cubicTo(9, 2, 4, 9, -6, 6);
    path.moveTo(-8, 8.5);
    path.cubicTo(-4, 3, -1, 0, 3.5, -3);
    return path;
}

QPainterPath pathOf(Icon icon) {
    switch (icon) {
        case Icon::Sun:
            return sun();
        case Icon::Pin:
            return pin();
        case Icon::Person:
            return person();
        case Icon::Page:
            return page();
        case Icon::Bars:
            return bars();
        case Icon::Magnifier:
            return magnifier();
        case Icon::Check:
            return lines({{-5.5, 0.5}, {-1.5, 4.5}, {6, -4.5}});
        case Icon::Chevron:
            return lines({{-4.5, -2}, {0, 2.5}, {4.5, -2}});
        case Icon::Bell:
            return bell();
        case Icon::Leaf:
            return leaf();
        case Icon::Arrow:
            return lines({{6, -5}, {6, 1}, {-5, 1}, {-2, -2}, {-5, 1}, {-2, 4}});
    }
    return {};
}

}  // namespace

void drawIcon(QPainter& painter, Icon icon, QPointF center, QColor color, double width) {
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(pathOf(icon).translated(center));
}

}  // namespace tessaloom::demo
