// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QPointF>
#include <QTextLayout>
#include <memory>
#include <string_view>

class QPainter;

namespace tessaloom {

/// A piece of text on one line, shaped and measured: any script and direction, with other fonts standing in
/// for missing glyphs. Belongs to the main thread, like all that Qt draws as text.
class TextLine {
  public:
    /// `text` is UTF-8; what isn't shows as replacement characters.
    TextLine(std::string_view text, const QFont& font);

    /// Of all fonts that were needed, in the font's pixels.
    double width() const { return line_.horizontalAdvance(); }
    double height() const { return line_.ascent() + line_.descent(); }
    double descent() const { return line_.descent(); }
    bool isRightToLeft() const { return layout_->text().isRightToLeft(); }

    /// Both draw in the painter's pen: from a place on the baseline, or in the box of `width` and `height`
    /// whose top left corner is given.
    void draw(QPainter& painter, QPointF baselineStart) const;
    void drawInBox(QPainter& painter, QPointF topLeft) const;

  private:
    std::unique_ptr<QTextLayout> layout_;
    QTextLine line_;
};

}  // namespace tessaloom
