// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>
#include <QPoint>
#include <QRect>

#include "demo-scene/TextLine.h"

/// Draws a TextLine that is being edited, and finds positions in it.
namespace tessaloom::demo::TextBox {

/// Several lines fill the rectangle from the top; a single line stands in its middle.
enum class Flow { SingleLine, Wrapped };

struct Shape {
    QRect rect = {};
    int fontPixels = 16;
    Flow flow = Flow::SingleLine;
};

/// The caret is drawn only when `focused`.
void draw(QPainter& painter, const Shape& shape, const TextLine& line, bool focused);

/// The caret position nearest to a point.
qsizetype caretAt(const Shape& shape, const TextLine& line, QPoint point);

}  // namespace tessaloom::demo::TextBox
