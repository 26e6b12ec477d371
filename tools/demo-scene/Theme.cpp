// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/Theme.h"

#include <QFontMetrics>
#include <QLinearGradient>
#include <QStringList>
#include <array>

namespace tessaloom::demo::Theme {
namespace {

QString initialsOf(const QString& person) {
    QString initials;
    for (const QString& name : person.split(QLatin1Char(' ')))
        initials += name.left(1);
    return initials;
}

QColor colorOf(const QString& person) {
    static constexpr std::array tints{QColor{0xD8, 0x6B, 0x4A}, QColor{0x3E, 0x7F, 0xA8},
                                      QColor{0x7A, 0x62, 0xA8}, QColor{0xC0, 0x8A, 0x2E},
                                      QColor{0x4C, 0x8C, 0x6A}, QColor{0xB2, 0x56, 0x7C}};
    unsigned sum = 0;
    for (const QChar letter : person)
        sum = sum * 3 + letter.unicode();
    return tints.at(sum % tints.size());
}

}  // namespace

QFont font(int pixels, Weight weight) {
    QFont result;
    result.setPixelSize(pixels);
    result.setBold(weight == Weight::Bold);
    // Positions that don't depend on hinting keep the spacing even at every size.
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

void drawText(QPainter& painter, const QRect& rect, const QString& text, const Letters& letters) {
    painter.setFont(font(letters.pixels, letters.weight));
    painter.setPen(letters.color);
    const QString fitting = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, static_cast<int>(letters.alignment) | Qt::TextSingleLine, fitting);
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
}

void outlineRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color, double width) {
    const double half = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void drawCard(QPainter& painter, const QRect& rect, double radius, int depth) {
    constexpr int layers = 9;
    for (int layer = layers; layer > 0; --layer) {
        const double spread = depth * 0.6 * layer * layer / (layers * layers);
        const QRectF shadow =
            QRectF(rect).adjusted(-spread, -spread, spread, spread).translated(0, depth * 0.3);
        fillRounded(painter, shadow, radius + spread, withAlpha(sidebarBottom, 0.03));
    }
    fillRounded(painter, rect, radius, card);
    outlineRounded(painter, rect, radius, withAlpha(light, 0.06));
}

void drawAvatar(QPainter& painter, const QRect& rect, const QString& person) {
    const QColor color = colorOf(person);
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, color.lighter(116));
    gradient.setColorAt(1, color);
    fillRounded(painter, rect, rect.width() / 2.0, gradient);
    drawText(painter, rect, initialsOf(person),
             {rect.width() * 9 / 25, light, Weight::Bold, Qt::AlignCenter});
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

}  // namespace tessaloom::demo::Theme
