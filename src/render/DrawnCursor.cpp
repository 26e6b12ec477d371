// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/DrawnCursor.h"

#include <QPainter>
#include <QPainterPath>
#include <utility>

namespace tessaloom {
namespace {

constexpr Size pointerSize{24, 24};
/// As many pixels as the sharpest theme images have.
constexpr double pointerScale = 4;
constexpr Size markSize{26, 26};
constexpr double markInset = 4;

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}
QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

CursorImage drawn(Size size, double scale, Point hotspot, const std::function<void(QPainter&)>& draw) {
    // The sizes above are far inside what a raster may be.
    OverlayRaster raster = drawRaster(size, scale, draw).value();
    return {std::move(raster.pixels), size, hotspot};
}

QPen rounded(const QColor& color, double width) {
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintPointer(QPainter& painter, const QPainterPath& shape) {
    // A shadow that fades in steps lifts the pointer off dark and light pages alike.
    for (const double spread : {4.2, 3.4, 2.6})
        painter.strokePath(shape.translated(0, 0.5), rounded(black(0.08), spread));
    painter.strokePath(shape, rounded(white(1), 2));
    painter.fillPath(shape, black(1));
}

QPainterPath arrowShape() {
    QPainterPath shape(QPointF(0, 0));
    for (const QPointF corner : {QPointF(0, 15.6), QPointF(3.6, 12.3), QPointF(6, 17.8), QPointF(8.5, 16.7),
                                 QPointF(6.1, 11.4), QPointF(11, 11.1)}) {
        shape.lineTo(corner);
    }
    shape.closeSubpath();
    return shape;
}

QPainterPath bar(double left, double top, double width, double bottom) {
    QPainterPath shape;
    shape.addRoundedRect(QRectF(left, top, width, bottom - top), width * 0.5, width * 0.5);
    return shape;
}

QPainterPath handShape() {
    QPainterPath palm;
    palm.addRoundedRect(QRectF(7.6, 11, 11.2, 10), 3.6, 3.6);
    QPainterPath thumb(QPointF(9, 18.4));
    thumb.cubicTo(7.4, 16.8, 5.4, 14.4, 4.4, 12.9);
    thumb.cubicTo(3.6, 11.6, 5.2, 10.4, 6.4, 11.4);
    thumb.lineTo(9, 13.6);
    thumb.closeSubpath();
    return palm.united(thumb)
        .united(bar(7.6, 2.6, 2.8, 16))
        .united(bar(10.4, 7.6, 2.8, 16))
        .united(bar(13.2, 8.2, 2.8, 16))
        .united(bar(16, 9.2, 2.8, 16))
        .simplified();
}

void paintHand(QPainter& painter) {
    paintPointer(painter, handShape());
    painter.setPen(rounded(white(0.85), 0.6));
    for (const double gap : {10.4, 13.2, 16.0})
        painter.drawLine(QPointF(gap, 11), QPointF(gap, 14));
}

QRectF markOval() {
    return QRectF(0, 0, markSize.width, markSize.height)
        .adjusted(markInset, markInset, -markInset, -markInset);
}

CursorImage drawnMark(const std::function<void(QPainter&)>& draw) {
    return drawn(markSize, rasterScale, {markSize.width * 0.5, markSize.height * 0.5}, draw);
}

}  // namespace

CursorImage drawnArrow() {
    constexpr Point tip{6, 3.5};
    return drawn(pointerSize, pointerScale, tip,
                 [&](QPainter& painter) { paintPointer(painter, arrowShape().translated(tip.x, tip.y)); });
}

CursorImage drawnHand() {
    return drawn(pointerSize, pointerScale, {9, 2.6}, paintHand);
}

CursorImage drawnDot() {
    return drawnMark([](QPainter& painter) {
        QPainterPath oval;
        oval.addEllipse(markOval());
        painter.fillPath(oval, white(0.92));
        painter.strokePath(oval, QPen(black(0.55), 2));
    });
}

CursorImage drawnRing() {
    return drawnMark([](QPainter& painter) {
        QPainterPath outer;
        outer.addEllipse(markOval().adjusted(-1, -1, 1, 1));
        painter.strokePath(outer, QPen(black(0.5), 4));
        QPainterPath oval;
        oval.addEllipse(markOval());
        painter.strokePath(oval, QPen(white(0.95), 3));
    });
}

}  // namespace tessaloom
