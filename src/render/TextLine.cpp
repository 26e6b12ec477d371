// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/TextLine.h"

#include <QPainter>
#include <QString>
#include <QTextOption>

namespace tessaloom {

TextLine::TextLine(std::string_view text, const QFont& font)
    : layout_(std::make_unique<QTextLayout>(
          QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), font)) {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::NoWrap);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    layout_->setTextOption(option);
    layout_->beginLayout();
    line_ = layout_->createLine();
    layout_->endLayout();
}

void TextLine::draw(QPainter& painter, QPointF baselineStart) const {
    drawInBox(painter, baselineStart - QPointF(0, line_.ascent()));
}

void TextLine::drawInBox(QPainter& painter, QPointF topLeft) const {
    layout_->draw(&painter, topLeft);
}

}  // namespace tessaloom
