// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/KeyBindings.h"

namespace tessaloom::demo {
namespace {

void applyShortcut(SceneState& state, int key) {
    switch (key) {
        case Qt::Key_A:
            state.editFocused(&TextLine::selectAll);
            break;
        case Qt::Key_K:
            state.openPalette();
            break;
        case Qt::Key_S:
            state.save();
            break;
        default:
            break;
    }
}

}  // namespace

void applyKey(SceneState& state, const QKeyEvent& event) {
    if (event.modifiers().testFlag(Qt::ControlModifier)) return applyShortcut(state, event.key());
    switch (event.key()) {
        case Qt::Key_Backspace:
            state.editFocused(&TextLine::eraseBackwards);
            break;
        case Qt::Key_Delete:
            state.editFocused(&TextLine::eraseForwards);
            break;
        case Qt::Key_Left:
            state.moveCaret(-1);
            break;
        case Qt::Key_Right:
            state.moveCaret(1);
            break;
        case Qt::Key_Up:
            state.moveChoice(-1);
            break;
        case Qt::Key_Down:
            state.moveChoice(1);
            break;
        case Qt::Key_Tab:
            state.focusNext();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            state.confirm();
            break;
        case Qt::Key_Escape:
            state.escape();
            break;
        default:
            if (!event.text().isEmpty() && event.text().at(0).isPrint()) state.type(event.text());
    }
}

}  // namespace tessaloom::demo
