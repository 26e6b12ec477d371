// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/SceneLayout.h"

#include <QJsonArray>
#include <algorithm>

#include "demo-scene/CounterCode.h"
#include "demo-scene/Visit.h"

namespace tessaloom::demo {
namespace {

constexpr int gap = 28;
constexpr int topBarHeight = 68;
constexpr int statusBarHeight = 36;
constexpr int cardPadding = 32;
constexpr int fieldHeight = 72;
constexpr int notesHeight = 108;
constexpr int headerHeight = 120;

class Builder {
  public:
    explicit Builder(QSize size) : size_(size), narrow_(size.width() < 1600) {}

    SceneLayout build(bool busy) {
        placeAreas();
        placeSidebar();
        placeList();
        placeForm();
        placeChart(busy);
        add(ControlKind::SaveState, 0, layout_.statusBar.adjusted(0, 0, -layout_.statusBar.width() / 2, 0));
        placeMenu();
        placePalette();
        placeToast();
        return layout_;
    }

  private:
    void add(ControlKind kind, int index, const QRect& rect) {
        layout_.controls.push_back({{kind, index}, rect});
    }

    void placeAreas() {
        const int sidebarWidth = narrow_ ? 208 : 256;
        const int listWidth = narrow_ ? 380 : 520;
        const int bottom = size_.height() - statusBarHeight;
        const int contentTop = topBarHeight + gap;
        const int formLeft = sidebarWidth + gap + listWidth + gap;
        hasNotes_ = size_.height() >= 960;
        fieldPitch_ = hasNotes_ ? 92 : 84;
        const int formHeight =
            headerHeight + 3 * fieldPitch_ + (hasNotes_ ? notesHeight + 16 : 0) + 46 + 2 * 28;
        layout_.sidebar = QRect(0, 0, sidebarWidth, size_.height());
        layout_.topBar = QRect(sidebarWidth, 0, size_.width() - sidebarWidth, topBarHeight);
        layout_.statusBar = QRect(sidebarWidth, bottom, size_.width() - sidebarWidth, statusBarHeight);
        layout_.list = QRect(sidebarWidth + gap, contentTop, listWidth, bottom - gap - contentTop);
        layout_.form = QRect(formLeft, contentTop, size_.width() - gap - formLeft, formHeight);
        const int chartTop = contentTop + formHeight + 24;
        layout_.chart = QRect(formLeft, chartTop, layout_.form.width(), bottom - gap - chartTop);
        const int stripWidth = CounterCode::cellCount * CounterCode::cellPixels;
        layout_.counterStrip =
            QRect(size_.width() - gap - stripWidth, bottom + 12, stripWidth, CounterCode::cellPixels);
    }

    void placeSidebar() {
        const int width = layout_.sidebar.width();
        for (int index = 0; index < navigationCount; ++index) {
            add(ControlKind::Navigation, index, QRect(14, 100 + index * 48, width - 28, 42));
        }
        add(ControlKind::Goal, 0, QRect(14, size_.height() - 142, width - 28, 124));
        const int searchWidth = std::min(520, layout_.topBar.width() / 2);
        add(ControlKind::Search, 0,
            QRect(layout_.topBar.left() + gap, (topBarHeight - 42) / 2, searchWidth, 42));
    }

    void placeList() {
        const QRect& list = layout_.list;
        const int tabWidth = 76;
        for (int index = 0; index < tabCount; ++index) {
            const int left = list.right() + 1 - (tabCount - index) * tabWidth;
            add(ControlKind::Tab, index, QRect(left, list.top() + 4, tabWidth, 36));
        }
        const int firstRow = list.top() + 76;
        const int pitch = 92;
        const int room = (list.bottom() - firstRow + 12) / pitch;
        const int count = std::min(static_cast<int>(sampleVisits().size()), room);
        for (int index = 0; index < count; ++index) {
            add(ControlKind::Row, index, QRect(list.left(), firstRow + index * pitch, list.width(), 82));
        }
    }

    void placeForm() {
        const QRect inner = layout_.form.adjusted(cardPadding, 28, -cardPadding, -28);
        const int columnWidth = (inner.width() - 24) / 2;
        const auto cell = [&](int column, int row) {
            return QRect(inner.left() + column * (columnWidth + 24),
                         inner.top() + headerHeight + row * fieldPitch_, columnWidth, fieldHeight);
        };
        add(ControlKind::Header, 0, QRect(inner.left(), inner.top(), inner.width(), headerHeight - 24));
        add(ControlKind::Field, TitleField, cell(0, 0));
        add(ControlKind::Field, SiteField, cell(1, 0));
        add(ControlKind::Field, EmailField, cell(0, 1));
        add(ControlKind::Field, HoursField, cell(1, 1));
        add(ControlKind::Status, 0, cell(0, 2));
        add(ControlKind::Toggle, 0, cell(1, 2));
        if (hasNotes_) {
            QRect notes = cell(0, 3);
            notes.setSize({inner.width(), notesHeight});
            add(ControlKind::Field, NotesField, notes);
        }
        const int buttonTop = inner.bottom() + 1 - 46;
        add(ControlKind::Discard, 0, QRect(inner.right() + 1 - 148 - 12 - 124, buttonTop, 124, 46));
        add(ControlKind::Save, 0, QRect(inner.right() + 1 - 148, buttonTop, 148, 46));
    }

    void placeChart(bool busy) {
        if (layout_.chart.height() < 150) {
            layout_.chart = {};
        } else if (busy) {
            add(ControlKind::Busy, 0, layout_.chart);
        } else {
            placeBars();
        }
    }

    void placeBars() {
        const QRect inner = layout_.chart.adjusted(cardPadding, 24, -cardPadding, -20);
        add(ControlKind::ChartTotal, 0, QRect(inner.left(), inner.top(), 210, inner.height()));
        const int left = inner.left() + 234;
        const int pitch = (inner.right() + 1 - left) / daysInWeek;
        for (int day = 0; day < daysInWeek; ++day) {
            add(ControlKind::Bar, day, QRect(left + day * pitch, inner.top(), pitch, inner.height()));
        }
    }

    void placeMenu() {
        const QRect box = fieldBox(layout_.rectOf({ControlKind::Status, 0}));
        const int itemHeight = 44;
        const int count = static_cast<int>(allStatuses.size());
        const QRect menu(box.left(), box.bottom() + 7, box.width(), count * itemHeight + 12);
        add(ControlKind::Menu, 0, menu);
        for (int index = 0; index < count; ++index) {
            add(ControlKind::MenuItem, index,
                QRect(menu.left() + 6, menu.top() + 6 + index * itemHeight, menu.width() - 12, itemHeight));
        }
    }

    // In the form's corner opposite the buttons, so that it is in sight of whoever has just saved.
    void placeToast() {
        const QRect discard = layout_.rectOf({ControlKind::Discard, 0});
        const int left = layout_.form.left() + cardPadding;
        add(ControlKind::Toast, 0,
            QRect(left, discard.top() - 4, std::min(400, discard.left() - 24 - left), discard.height() + 8));
    }

    void placePalette() {
        const int width = std::min(720, size_.width() - 2 * gap);
        const QRect palette((size_.width() - width) / 2, 150, width,
                            84 + paletteItemCount * paletteItemHeight);
        add(ControlKind::Palette, 0, palette);
        for (int index = 0; index < paletteItemCount; ++index) {
            add(ControlKind::PaletteItem, index,
                QRect(palette.left() + 10, palette.top() + 74 + index * paletteItemHeight, width - 20,
                      paletteItemHeight));
        }
    }

    QSize size_;
    bool narrow_;
    bool hasNotes_ = true;
    int fieldPitch_ = 0;
    SceneLayout layout_;
};

QJsonArray toJson(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

}  // namespace

SceneLayout SceneLayout::forSize(QSize size, bool busy) {
    return Builder(size).build(busy);
}

QRect SceneLayout::rectOf(ControlId id) const {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const Control& control) { return control.id == id; });
    return found == controls.end() ? QRect() : found->rect;
}

QJsonObject SceneLayout::geometry(QPoint sceneOrigin) const {
    QJsonObject result;
    for (const Control& control : controls) {
        result.insert(nameOf(control.id), toJson(control.rect.translated(sceneOrigin)));
    }
    result.insert(QStringLiteral("counter"), toJson(counterStrip.translated(sceneOrigin)));
    return result;
}

QRect fieldBox(const QRect& field) {
    return field.adjusted(0, 24, 0, 0);
}

TextBox::Shape textShapeOf(const QRect& field, int fieldIndex) {
    const QRect box = fieldBox(field);
    if (fieldIndex != NotesField) return {box.adjusted(16, 0, -16, 0)};
    return {box.adjusted(16, 12, -16, -12), 16, TextBox::Flow::Wrapped};
}

}  // namespace tessaloom::demo
