// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tessaloom::demo {

/// Editable text with a caret; everything is selected or nothing is. Indexes count UTF-16 units.
class TextLine {
  public:
    TextLine() = default;
    explicit TextLine(const QString& text) : text_(text), caret_(text.size()) {}

    const QString& text() const { return text_; }
    qsizetype caret() const { return caret_; }
    bool allSelected() const { return allSelected_; }

    void placeCaret(qsizetype index);
    void moveCaret(qsizetype distance);
    void selectAll();
    void deselect() { allSelected_ = false; }
    /// In place of what is selected.
    void insert(const QString& text);
    void eraseBackwards();
    void eraseForwards();

    bool operator==(const TextLine&) const = default;

  private:
    bool eraseSelection();

    QString text_;
    qsizetype caret_ = 0;
    bool allSelected_ = false;
};

}  // namespace tessaloom::demo
