// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/TextBox.h"

#include <QTextLayout>
#include <algorithm>

#include "demo-scene/Theme.h"

namespace tessaloom::demo::TextBox {
namespace {

constexpr double unlimitedWidth = 100'000;
constexpr double lineSpacing = 1.4;

void layOut(QTextLayout& layout, const Shape& shape) {
    QTextOption option;
    option.setWrapMode(shape.flow == Flow::Wrapped ? QTextOption::WordWrap : QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    double y = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(shape.flow == Flow::Wrapped ? shape.rect.width() : unlimitedWidth);
        line.setPosition({0, y});
        y += line.height() * lineSpacing;
    }
    layout.endLayout();
}

QPointF originOf(const QTextLayout& layout, const Shape& shape) {
    if (shape.flow == Flow::Wrapped || layout.lineCount() == 0) return shape.rect.topLeft();
    const double top = shape.rect.top() + (shape.rect.height() - layout.lineAt(0).height()) / 2;
    return {static_cast<double>(shape.rect.left()), top};
}

QList<QTextLayout::FormatRange> selectionOf(const TextLine& line) {
    if (!line.allSelected()) return {};
    QTextLayout::FormatRange range;
    range.start = 0;
    range.length = static_cast<int>(line.text().size());
    range.format.setBackground(Theme::accentDark);
    return {range};
}

}  // namespace

void draw(QPainter& painter, const Shape& shape, const TextLine& line, bool focused) {
    QTextLayout layout(line.text(), Theme::font(shape.fontPixels));
    layOut(layout, shape);
    painter.save();
    painter.setClipRect(shape.rect.adjusted(-2, 0, 2, 0), Qt::IntersectClip);
    painter.setPen(Theme::ink);
    const QPointF origin = originOf(layout, shape);
    layout.draw(&painter, origin, selectionOf(line));
    if (focused && !line.allSelected()) {
        painter.setPen(Theme::accent);
        layout.drawCursor(&painter, origin, static_cast<int>(line.caret()), 2);
    }
    painter.restore();
}

qsizetype caretAt(const Shape& shape, const TextLine& line, QPoint point) {
    QTextLayout layout(line.text(), Theme::font(shape.fontPixels));
    layOut(layout, shape);
    if (layout.lineCount() == 0) return 0;
    const QPointF offset = QPointF(point) - originOf(layout, shape);
    const double pitch = layout.lineAt(0).height() * lineSpacing;
    const int row = std::clamp(static_cast<int>(offset.y() / pitch), 0, layout.lineCount() - 1);
    return layout.lineAt(row).xToCursor(offset.x());
}

}  // namespace tessaloom::demo::TextBox
