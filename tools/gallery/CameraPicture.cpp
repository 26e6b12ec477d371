// SPDX-License-Identifier: GPL-3.0-or-later
#include "gallery/CameraPicture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <array>

namespace tessaloom::gallery {
namespace {

constexpr QSize pictureSize(1280, 720);

constexpr QColor skin{0xE3, 0xA8, 0x84};
constexpr QColor skinShade{0xC9, 0x87, 0x66};
constexpr QColor hair{0x4A, 0x2E, 0x24};
constexpr QColor jumper{0x2F, 0x7F, 0x86};
constexpr QColor jumperShade{0x24, 0x68, 0x70};
constexpr QColor ink{0x33, 0x22, 0x1E};

QPainterPath ellipse(QPointF centre, double radiusX, double radiusY) {
    QPainterPath path;
    path.addEllipse(centre, radiusX, radiusY);
    return path;
}

QPainterPath stroked(const QPainterPath& line, double width) {
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(line).simplified();
}

QPainterPath limb(QPointF from, QPointF over, QPointF to, double width) {
    QPainterPath line(from);
    line.quadTo(over, to);
    return stroked(line, width);
}

QPainterPath torso() {
    QPainterPath path(QPointF(370, 720));
    path.cubicTo(375, 560, 450, 525, 560, 500);
    path.lineTo(720, 500);
    path.cubicTo(830, 525, 905, 560, 910, 720);
    return path;
}

QPainterPath neck() {
    QPainterPath path;
    path.addRoundedRect(QRectF(582, 400, 116, 150), 50, 50);
    return path;
}

QPainterPath hairBehind() {
    return ellipse({640, 250}, 158, 178)
        .united(ellipse({548, 380}, 62, 110))
        .united(ellipse({732, 380}, 62, 110));
}

QPainterPath fringe() {
    QPainterPath path(QPointF(508, 268));
    path.cubicTo(520, 70, 760, 60, 774, 268);
    path.cubicTo(740, 215, 690, 190, 610, 186);
    path.cubicTo(580, 214, 540, 232, 508, 268);
    return path;
}

QPainterPath face() {
    return ellipse({640, 290}, 122, 150);
}

QPainterPath sleeve() {
    return limb({415, 640}, {300, 660}, {286, 500}, 104);
}

QPainterPath hand() {
    QPainterPath path = ellipse({284, 370}, 52, 58).united(limb({286, 430}, {286, 400}, {284, 380}, 58));
    const std::array<QPointF, 4> tips{QPointF(232, 262), QPointF(268, 240), QPointF(306, 244),
                                      QPointF(340, 268)};
    for (std::size_t n = 0; n < tips.size(); ++n) {
        const QPointF root(250 + 23.0 * static_cast<double>(n), 350);
        path = path.united(limb(root, (root + tips[n]) / 2, tips[n], 27));
    }
    return path.united(limb({318, 392}, {350, 376}, {372, 344}, 30));
}

QPainterPath silhouette() {
    return torso().united(neck()).united(hairBehind()).united(face()).united(sleeve()).united(hand());
}

void paintShelves(QPainter& painter) {
    static constexpr std::array spines{QColor{0xB8, 0x4C, 0x3E}, QColor{0xE0, 0xA4, 0x58},
                                       QColor{0x5C, 0x8A, 0x6E}, QColor{0x3F, 0x5F, 0x8A},
                                       QColor{0xD9, 0xCB, 0xB0}, QColor{0x8C, 0x5A, 0x7E}};
    for (const int shelf : {190, 400, 610}) {
        for (int book = 0; book < 11; ++book) {
            const int tall = 96 + (book * 37 + shelf) % 52;
            const auto color = static_cast<std::size_t>(book * 5 + shelf / 10) % spines.size();
            painter.fillRect(880 + book * 34, shelf - tall, 28 + book % 3 * 2, tall, spines[color]);
        }
        painter.fillRect(860, shelf, 420, 16, QColor(0x7A, 0x56, 0x3C));
    }
}

void paintWindow(QPainter& painter) {
    const QRect pane(60, 70, 330, 400);
    QLinearGradient sky(pane.topLeft(), pane.bottomLeft());
    sky.setColorAt(0, QColor(0xBF, 0xDF, 0xF2));
    sky.setColorAt(1, QColor(0xF4, 0xF1, 0xDC));
    painter.fillRect(pane, sky);
    QPainterPath visible;
    visible.addRect(pane);
    painter.fillPath(visible.intersected(ellipse({150, 470}, 180, 110)), QColor(0x8F, 0xB7, 0x8A));
    painter.setPen(QPen(QColor(0xFA, 0xF6, 0xEE), 16));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(pane);
    painter.drawLine(pane.center().x(), pane.top(), pane.center().x(), pane.bottom());
    painter.drawLine(pane.left(), pane.center().y(), pane.right(), pane.center().y());
    painter.fillRect(30, 470, 390, 22, QColor(0xFA, 0xF6, 0xEE));
}

void paintStudy(QPainter& painter) {
    QLinearGradient wall(0, 0, 1280, 720);
    wall.setColorAt(0, QColor(0xE9, 0xDD, 0xC9));
    wall.setColorAt(1, QColor(0xC9, 0xB3, 0x97));
    painter.fillRect(QRect({0, 0}, pictureSize), wall);
    paintWindow(painter);
    paintShelves(painter);
}

void paintFeatures(QPainter& painter) {
    for (const double x : {592.0, 688.0}) {
        painter.fillPath(ellipse({x, 290}, 11, 14), ink);
        painter.fillPath(ellipse({x + 4, 285}, 4, 4), Qt::white);
        painter.fillPath(limb({x - 24, 252}, {x, 238}, {x + 24, 252}, 9), hair);
        painter.fillPath(ellipse({x + (x - 640) * 0.45, 335}, 24, 16), QColor(0xE0, 0x7F, 0x6C, 110));
    }
    painter.fillPath(limb({640, 300}, {628, 335}, {644, 338}, 7), skinShade);
    QPainterPath smile(QPointF(590, 366));
    smile.quadTo(640, 382, 690, 366);
    smile.quadTo(640, 436, 590, 366);
    painter.fillPath(smile, QColor(0x8E, 0x2F, 0x33));
    QPainterPath teeth(QPointF(600, 371));
    teeth.quadTo(640, 382, 680, 371);
    teeth.quadTo(640, 400, 600, 371);
    painter.fillPath(teeth, Qt::white);
}

void paintPerson(QPainter& painter) {
    painter.fillPath(hairBehind(), hair);
    painter.fillPath(neck(), skinShade);
    painter.fillPath(torso(), jumper);
    painter.fillPath(limb({566, 506}, {640, 566}, {714, 506}, 26), jumperShade);
    painter.fillPath(face(), skin);
    painter.fillPath(fringe(), hair);
    paintFeatures(painter);
    painter.fillPath(hand(), skin);
    painter.fillPath(sleeve(), jumper);
    painter.fillPath(limb({240, 494}, {286, 478}, {332, 494}, 24), jumperShade);
}

}  // namespace

QImage cameraPicture() {
    QImage picture(pictureSize, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    paintStudy(painter);
    paintPerson(painter);
    return picture;
}

QImage cameraMatte() {
    QImage picture(pictureSize, QImage::Format_RGB32);
    picture.fill(Qt::black);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(silhouette(), Qt::white);
    return picture;
}

}  // namespace tessaloom::gallery
