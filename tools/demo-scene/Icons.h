// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPainter>
#include <QPointF>

namespace tessaloom::demo {

enum class Icon { Sun, Pin, Person, Page, Bars, Magnifier, Check, Chevron, Bell, Leaf, Arrow };

/// Line drawings on a square of 24 pixels around `center`.
void drawIcon(QPainter& painter, Icon icon, QPointF center, QColor color, double width = 1.8);

}  // namespace tessaloom::demo
