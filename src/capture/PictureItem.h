// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QQuickPaintedItem>

namespace tessaloom {

/// A picture that fills its item, with rounded corners and a border if wanted; nothing without a picture.
class PictureItem : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY imageChanged)
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY shapeChanged)
    Q_PROPERTY(qreal borderWidth MEMBER borderWidth_ NOTIFY shapeChanged)
    Q_PROPERTY(QColor borderColor MEMBER borderColor_ NOTIFY shapeChanged)

  public:
    explicit PictureItem(QQuickItem* parent = nullptr);

    const QImage& image() const { return image_; }
    bool isEmpty() const { return image_.isNull(); }
    void setImage(const QImage& image);
    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void imageChanged();
    void shapeChanged();

  private:
    QImage image_;
    qreal radius_ = 0;
    qreal borderWidth_ = 0;
    QColor borderColor_;
};

}  // namespace tessaloom
