// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/Control.h"

#include <array>

namespace tessaloom::demo {
namespace {

QString numbered(const char* prefix, int index) {
    return QLatin1String(prefix) + QLatin1Char('.') + QString::number(index);
}

QString fieldName(int index) {
    static constexpr std::array names{"title", "site", "email", "hours", "notes"};
    return QStringLiteral("field.") + QLatin1String(names.at(static_cast<std::size_t>(index)));
}

}  // namespace

QString nameOf(ControlId id) {
    switch (id.kind) {
        case ControlKind::None:
            return {};
        case ControlKind::Navigation:
            return numbered("navigation", id.index);
        case ControlKind::Goal:
            return QStringLiteral("goal");
        case ControlKind::Search:
            return QStringLiteral("search");
        case ControlKind::Tab:
            return numbered("tab", id.index);
        case ControlKind::Row:
            return numbered("row", id.index);
        case ControlKind::Header:
            return QStringLiteral("header");
        case ControlKind::Field:
            return fieldName(id.index);
        case ControlKind::Status:
            return QStringLiteral("dropdown.status");
        case ControlKind::Toggle:
            return QStringLiteral("toggle.share");
        case ControlKind::Discard:
            return QStringLiteral("button.discard");
        case ControlKind::Save:
            return QStringLiteral("button.save");
        case ControlKind::ChartTotal:
            return QStringLiteral("chart.total");
        case ControlKind::Bar:
            return numbered("chart.bar", id.index);
        case ControlKind::Busy:
            return QStringLiteral("busy");
        case ControlKind::SaveState:
            return QStringLiteral("save-state");
        case ControlKind::Menu:
            return QStringLiteral("menu");
        case ControlKind::MenuItem:
            return numbered("option", id.index);
        case ControlKind::Palette:
            return QStringLiteral("palette");
        case ControlKind::PaletteItem:
            return numbered("palette.item", id.index);
        case ControlKind::Toast:
            return QStringLiteral("toast");
    }
    return {};
}

}  // namespace tessaloom::demo
