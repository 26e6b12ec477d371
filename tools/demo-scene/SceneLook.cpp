// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneLook.h"

#include <algorithm>

namespace tessaloom::demo {
namespace {

void addVisit(Look& look, const Visit& visit) {
    look.text = visit.title;
    look.detail = visit.person + QStringLiteral("  \u00b7  ") + visit.site;
    look.number = static_cast<int>(visit.status);
    look.items = QStringList{visit.person, weekdayName(visit.weekday)};
}

void addRow(Look& look, const SceneState& state, int row) {
    const Visit* visit = state.visitInRow(row);
    look.visible = visit != nullptr;
    if (!look.visible) return;
    addVisit(look, *visit);
    look.chosen = state.rowSelected(row);
}

void addPaletteItem(Look& look, const SceneState& state, int index) {
    look.text = state.paletteMatches().value(index);
    look.level = state.paletteLevel();
    look.visible = look.level > 0 && !look.text.isEmpty();
    look.chosen = index == state.paletteChoice();
}

void addPalette(Look& look, const SceneState& state) {
    look.level = state.paletteLevel();
    look.visible = look.level > 0;
    look.edit = state.paletteQuery();
    look.number = static_cast<int>(state.paletteMatches().size());
    look.hovered = false;
}

void addMenu(Look& look, const SceneState& state, int index) {
    look.level = state.menuLevel();
    look.visible = look.level > 0;
    look.number = index;
    look.chosen = static_cast<int>(state.draft().status) == index;
}

void addTotals(Look& look, const SceneState& state) {
    for (int day = 0; day < daysInWeek; ++day)
        look.level += state.hoursOn(day);
}

bool takesClicks(ControlKind kind) {
    switch (kind) {
        case ControlKind::Goal:
        case ControlKind::Header:
        case ControlKind::ChartTotal:
        case ControlKind::Busy:
        case ControlKind::SaveState:
        case ControlKind::Toast:
            return false;
        default:
            return true;
    }
}

}  // namespace

Look lookOf(const SceneState& state, ControlId control) {
    Look look;
    look.hovered = state.hovered() == control;
    look.pressed = look.hovered && state.pressed() == control;
    look.focused = state.focused() == control;
    switch (control.kind) {
        case ControlKind::Navigation:
            look.chosen = state.section() == control.index;
            break;
        case ControlKind::Goal:
            look.number = state.finishedCount();
            break;
        case ControlKind::Tab:
            look.chosen = state.tab() == control.index;
            break;
        case ControlKind::Row:
            addRow(look, state, control.index);
            break;
        case ControlKind::Header:
            addVisit(look, state.selectedVisit());
            break;
        case ControlKind::Field:
            look.edit = state.draft().fields.at(static_cast<std::size_t>(control.index));
            break;
        case ControlKind::Status:
            look.number = static_cast<int>(state.draft().status);
            look.focused = state.menuLevel() > 0;
            break;
        case ControlKind::Toggle:
            look.level = state.sharedLevel();
            break;
        case ControlKind::Discard:
            look.chosen = state.modified();
            break;
        case ControlKind::Save:
            break;
        case ControlKind::ChartTotal:
            addTotals(look, state);
            break;
        case ControlKind::Bar:
            look.level = state.hoursOn(control.index);
            break;
        case ControlKind::Busy:
            look.number = state.busyFrame();
            break;
        case ControlKind::SaveState:
            look.chosen = state.modified();
            break;
        case ControlKind::Menu:
        case ControlKind::MenuItem:
            addMenu(look, state, control.index);
            break;
        case ControlKind::Palette:
            addPalette(look, state);
            break;
        case ControlKind::PaletteItem:
            addPaletteItem(look, state, control.index);
            break;
        case ControlKind::Toast:
            look.level = state.toastLevel();
            look.visible = look.level > 0;
            look.text = state.toastText();
            break;
        default:
            break;
    }
    return look;
}

QRect paintedArea(const Control& control) {
    switch (control.id.kind) {
        case ControlKind::Palette:
            return control.rect.adjusted(-48, -40, 48, 64);
        case ControlKind::Menu:
            return control.rect.adjusted(-24, -24, 24, 32);
        case ControlKind::Toast:
            return control.rect.adjusted(-32, -24, 32, 56);
        default:
            return control.rect.adjusted(-4, -4, 4, 4);
    }
}

QRegion changedArea(const SceneLayout& layout, const SceneState& before, const SceneState& after) {
    QRegion changed;
    for (const Control& control : layout.controls) {
        const Look old = lookOf(before, control.id);
        const Look now = lookOf(after, control.id);
        if ((old.visible || now.visible) && !(old == now)) changed += paintedArea(control);
    }
    return changed;
}

ControlId controlAt(const SceneLayout& layout, const SceneState& state, QPoint point) {
    const auto hit = [&](const Control& control) {
        return takesClicks(control.id.kind) && control.rect.contains(point) &&
               lookOf(state, control.id).visible;
    };
    const auto found = std::find_if(layout.controls.rbegin(), layout.controls.rend(), hit);
    return found == layout.controls.rend() ? ControlId{} : found->id;
}

}  // namespace tessaloom::demo
