// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

namespace tessaloom::demo {

/// Everything on the scene that can change or be pointed at, in the order it is painted.
enum class ControlKind {
    None,
    Navigation,
    Goal,
    Search,
    Tab,
    Row,
    Header,
    Field,
    Status,
    Toggle,
    Discard,
    Save,
    ChartTotal,
    Bar,
    Busy,
    SaveState,
    Menu,
    MenuItem,
    Palette,
    PaletteItem,
    Toast,
};

struct ControlId {
    ControlKind kind = ControlKind::None;
    int index = 0;

    bool operator==(const ControlId&) const = default;
};

/// As "row.2" or "button.save": the names under which scripts find controls.
QString nameOf(ControlId id);

struct Control {
    ControlId id;
    QRect rect;
};

enum FieldIndex { TitleField, SiteField, EmailField, HoursField, NotesField, fieldCount };

}  // namespace tessaloom::demo
