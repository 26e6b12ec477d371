// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/PictureItem.h"

#include <QPainter>
#include <QPainterPath>

namespace tessaloom {

PictureItem::PictureItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(this, &PictureItem::shapeChanged, this, [this] { update(); });
}

void PictureItem::setImage(const QImage& image) {
    image_ = image;
    update();
    Q_EMIT imageChanged();
}

void PictureItem::paint(QPainter* painter) {
    if (image_.isNull()) return;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF area = boundingRect();
    if (radius_ <= 0) {
        painter->drawImage(area, image_);
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    QBrush brush(image_);
    brush.setTransform(QTransform::fromScale(area.width() / image_.width(), area.height() / image_.height()));
    painter->setPen(Qt::NoPen);
    painter->setBrush(brush);
    painter->drawRoundedRect(area, radius_, radius_);
    if (borderWidth_ <= 0) return;
    const qreal half = borderWidth_ / 2;
    painter->setPen(QPen(borderColor_, borderWidth_));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(area.adjusted(half, half, -half, -half), radius_ - half, radius_ - half);
}

}  // namespace tessaloom
