// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QRect>
#include <QString>

/// The scene's colours, letters and surfaces. Sizes in pixels.
namespace tessaloom::demo::Theme {

// Dark, so that a recorder's light marks (click ripples) can be seen anywhere.
inline constexpr QColor paper{0x17, 0x20, 0x1E};
inline constexpr QColor card{0x22, 0x2D, 0x2A};
inline constexpr QColor light{0xFF, 0xFF, 0xFF};
inline constexpr QColor ink{0xEC, 0xF3, 0xEF};
inline constexpr QColor muted{0x9F, 0xB1, 0xAA};
inline constexpr QColor faint{0x74, 0x86, 0x80};
inline constexpr QColor hairline{0x35, 0x43, 0x3E};
inline constexpr QColor inset{0x1B, 0x25, 0x22};
inline constexpr QColor accent{0x2A, 0xA3, 0x78};
inline constexpr QColor accentDark{0x1F, 0x80, 0x5D};
inline constexpr QColor accentSoft{0x24, 0x41, 0x37};
inline constexpr QColor amber{0xE2, 0xA0, 0x3F};
inline constexpr QColor sidebarTop{0x12, 0x2B, 0x25};
inline constexpr QColor sidebarBottom{0x0B, 0x1C, 0x18};
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

/// A raised surface with a soft shadow that reaches about `depth` below it.
void drawCard(QPainter& painter, const QRect& rect, double radius, int depth);

/// A round with a person's initials, in a colour of their own.
void drawAvatar(QPainter& painter, const QRect& rect, const QString& person);

QColor withAlpha(QColor color, double alpha);

}  // namespace tessaloom::demo::Theme
