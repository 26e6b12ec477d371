// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

/// The scene's colours, letters and surfaces. Sizes in pixels.
namespace tessaloom::demo::Theme {

inline constexpr QColor paper{0xF6, 0xF4, 0xEE};
inline constexpr QColor card{0xFF, 0xFF, 0xFF};
inline constexpr QColor ink{0x1D, 0x2B, 0x28};
inline constexpr QColor muted{0x6C, 0x7A, 0x76};
inline constexpr QColor faint{0x9A, 0xA5, 0xA1};
inline constexpr QColor hairline{0xE5, 0xE1, 0xD7};
inline constexpr QColor inset{0xFA, 0xF9, 0xF5};
inline constexpr QColor accent{0x1B, 0x80, 0x5C};
inline constexpr QColor accentDark{0x14, 0x66, 0x49};
inline constexpr QColor accentSoft{0xE2, 0xF2, 0xEA};
inline constexpr QColor amber{0xE2, 0xA0, 0x3F};
inline constexpr QColor sidebarTop{0x16, 0x38, 0x30};
inline constexpr QColor sidebarBottom{0x0F, 0x28, 0x22};
inline constexpr QColor sidebarText{0xB9, 0xD0, 0xC6};

enum class Weight { Regular, Bold };

struct Letters {
    int pixels = 15;
    QColor color = ink;
    Weight weight = Weight::Regular;
    Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
};

QFont font(int pixels, Weight weight = Weight::Regular);

/// On one line, shortened with an ellipsis where it doesn't fit.
void drawText(QPainter& painter, const QRect& rect, const QString& text, const Letters& letters);

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);
void outlineRounded(QPainter& painter, const QRectF& rect, double radius, const QColor& color,
                    double width = 1);

/// A white surface with a soft shadow that reaches about `depth` below it.
void drawCard(QPainter& painter, const QRect& rect, double radius, int depth);

/// A round with a person's initials, in a colour of their own.
void drawAvatar(QPainter& painter, const QRect& rect, const QString& person);

QColor withAlpha(QColor color, double alpha);

}  // namespace tessaloom::demo::Theme
