// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/TextLine.h"

#include <algorithm>

namespace tessaloom::demo {

void TextLine::placeCaret(qsizetype index) {
    allSelected_ = false;
    caret_ = std::clamp<qsizetype>(index, 0, text_.size());
}

void TextLine::moveCaret(qsizetype distance) {
    placeCaret(caret_ + distance);
}

void TextLine::selectAll() {
    caret_ = text_.size();
    allSelected_ = !text_.isEmpty();
}

void TextLine::insert(const QString& text) {
    eraseSelection();
    text_.insert(caret_, text);
    caret_ += text.size();
}

void TextLine::eraseBackwards() {
    if (eraseSelection() || caret_ == 0) return;
    text_.remove(--caret_, 1);
}

void TextLine::eraseForwards() {
    if (!eraseSelection()) text_.remove(caret_, 1);
}

bool TextLine::eraseSelection() {
    if (!allSelected_) return false;
    *this = TextLine();
    return true;
}

}  // namespace tessaloom::demo
