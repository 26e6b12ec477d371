// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLinearGradient>
#include <algorithm>

#include "demo-scene/ControlPainter.h"
#include "demo-scene/Theme.h"

// The week's hours, and the animated area that may stand in their place.
namespace tessaloom::demo {
namespace {

using Theme::Weight;

constexpr double fullScaleHours = 12;
constexpr int today = 3;
constexpr double euroPerHour = 64;

QString hoursText(double hours) {
    return QString::number(hours, 'f', 1) + QStringLiteral(" h");
}

}  // namespace

void paintChartTotal(QPainter& painter, const QRect& rect, const Look& look) {
    const auto line = [&](int top, int height, const QString& text, const Theme::Letters& letters) {
        Theme::drawText(painter, {rect.left(), rect.top() + top, rect.width(), height}, text, letters);
    };
    line(0, 24, QStringLiteral("Hours this week"), {16, Theme::ink, Weight::Bold});
    line(38, 48, hoursText(look.level), {36, Theme::accent, Weight::Bold});
    const QString amount = QStringLiteral("\u20ac %1 to invoice").arg(look.level * euroPerHour, 0, 'f', 0);
    line(90, 22, amount, {14, Theme::muted});
}

void paintBar(QPainter& painter, const QRect& rect, int index, const Look& look) {
    const QRect column(rect.left() + rect.width() / 2 - 22, rect.top() + 26, 44, rect.height() - 26 - 32);
    Theme::fillRounded(painter, column, 9, look.hovered ? Theme::hairline : Theme::inset.darker(102));
    const double height = std::max(9.0, std::min(1.0, look.level / fullScaleHours) * column.height());
    const QRectF bar(column.left(), column.bottom() + 1 - height, column.width(), height);
    const QColor color = index == today ? Theme::amber : Theme::accent;
    QLinearGradient gradient(bar.topLeft(), bar.bottomLeft());
    gradient.setColorAt(0, color.lighter(look.hovered ? 125 : 112));
    gradient.setColorAt(1, color);
    if (look.level > 0) Theme::fillRounded(painter, bar, 9, gradient);
    Theme::drawText(painter, {rect.left(), rect.bottom() - 24, rect.width(), 22}, weekdayName(index),
                    {14, index == today ? Theme::ink : Theme::muted,
                     index == today ? Weight::Bold : Weight::Regular, Qt::AlignCenter});
    Theme::drawText(painter, {rect.left(), rect.top(), rect.width(), 20}, hoursText(look.level),
                    {13, look.hovered ? Theme::ink : Theme::faint,
                     look.hovered ? Weight::Bold : Weight::Regular, Qt::AlignCenter});
}

void paintBusy(QPainter& painter, const QRect& rect, const Look& look) {
    const double shift = look.number * 6.0;
    QLinearGradient gradient(rect.left() + shift, rect.top(), rect.left() + shift + 480, rect.top() + 240);
    gradient.setSpread(QGradient::ReflectSpread);
    gradient.setColorAt(0, Theme::accent);
    gradient.setColorAt(0.5, Theme::amber);
    gradient.setColorAt(1, QColor(0x3E, 0x7F, 0xA8));
    Theme::fillRounded(painter, rect, 16, gradient);
}

}  // namespace tessaloom::demo
