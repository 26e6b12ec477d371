// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/ControlPainter.h"

namespace tessaloom::demo {

void paintControl(QPainter& painter, const Control& control, const Look& look) {
    const QRect& rect = control.rect;
    const int index = control.id.index;
    switch (control.id.kind) {
        case ControlKind::None:
            break;
        case ControlKind::Navigation:
            paintNavigation(painter, rect, index, look);
            break;
        case ControlKind::Goal:
            paintGoal(painter, rect, look);
            break;
        case ControlKind::Search:
            paintSearch(painter, rect, look);
            break;
        case ControlKind::Tab:
            paintTab(painter, rect, index, look);
            break;
        case ControlKind::Row:
            paintRow(painter, rect, look);
            break;
        case ControlKind::Header:
            paintHeader(painter, rect, look);
            break;
        case ControlKind::Field:
            paintField(painter, rect, index, look);
            break;
        case ControlKind::Status:
            paintStatus(painter, rect, look);
            break;
        case ControlKind::Toggle:
            paintToggle(painter, rect, look);
            break;
        case ControlKind::Discard:
            paintDiscard(painter, rect, look);
            break;
        case ControlKind::Save:
            paintSave(painter, rect, look);
            break;
        case ControlKind::ChartTotal:
            paintChartTotal(painter, rect, look);
            break;
        case ControlKind::Bar:
            paintBar(painter, rect, index, look);
            break;
        case ControlKind::Busy:
            paintBusy(painter, rect, look);
            break;
        case ControlKind::SaveState:
            paintSaveState(painter, rect, look);
            break;
        case ControlKind::Menu:
            paintMenu(painter, rect, look);
            break;
        case ControlKind::MenuItem:
            paintMenuItem(painter, rect, look);
            break;
        case ControlKind::Palette:
            paintPalette(painter, rect, look);
            break;
        case ControlKind::PaletteItem:
            paintPaletteItem(painter, rect, look);
            break;
        case ControlKind::Toast:
            paintToast(painter, rect, look);
            break;
    }
}

}  // namespace tessaloom::demo
