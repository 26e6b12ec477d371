// SPDX-License-Identifier: GPL-3.0-or-later
#include <QLinearGradient>
#include <array>

#include "demo-scene/ControlPainter.h"
#include "demo-scene/Icons.h"
#include "demo-scene/TextBox.h"
#include "demo-scene/Theme.h"

// The form of the selected visit.
namespace tessaloom::demo {
namespace {

using Theme::Weight;

constexpr double boxRadius = 10;

void paintLabel(QPainter& painter, const QRect& field, const QString& text) {
    Theme::drawText(painter, {field.left(), field.top() - 2, field.width(), 20}, text,
                    {13, Theme::muted, Weight::Bold});
}

void paintBox(QPainter& painter, const QRect& box, const Look& look) {
    if (look.focused) {
        Theme::fillRounded(painter, box.adjusted(-3, -3, 3, 3), boxRadius + 3,
                           Theme::withAlpha(Theme::accent, 0.16));
    }
    Theme::fillRounded(painter, box, boxRadius, look.focused ? Theme::card : Theme::inset);
    const QColor border = look.focused ? Theme::accent : look.hovered ? Theme::faint : Theme::hairline;
    Theme::outlineRounded(painter, box, boxRadius, border, look.focused ? 2 : 1);
}

}  // namespace

void paintHeader(QPainter& painter, const QRect& rect, const Look& look) {
    const QRect avatar(rect.left(), rect.top() + 2, 66, 66);
    Theme::drawAvatar(painter, avatar, look.items.at(0));
    const int left = avatar.right() + 23;
    const QRect pill(rect.right() + 1 - 104, rect.top() + 20, 104, 30);
    Theme::drawText(painter, {left, rect.top() + 4, pill.left() - left - 16, 34}, look.text,
                    {24, Theme::ink, Weight::Bold});
    Theme::drawText(painter, {left, rect.top() + 42, pill.left() - left - 16, 22}, look.detail,
                    {15, Theme::muted});
    paintStatusPill(painter, pill, static_cast<VisitStatus>(look.number));
    painter.fillRect(QRect(rect.left(), rect.bottom() - 1, rect.width(), 1), Theme::hairline);
}

void paintField(QPainter& painter, const QRect& rect, int index, const Look& look) {
    static constexpr std::array labels{"Title", "Site", "Contact", "Hours", "Notes"};
    paintLabel(painter, rect, QLatin1String(labels.at(static_cast<std::size_t>(index))));
    const QRect box = fieldBox(rect);
    paintBox(painter, box, look);
    TextBox::draw(painter, textShapeOf(rect, index), look.edit, look.focused);
}

void paintStatus(QPainter& painter, const QRect& rect, const Look& look) {
    paintLabel(painter, rect, QStringLiteral("Status"));
    const QRect box = fieldBox(rect);
    paintBox(painter, box, look);
    const auto status = static_cast<VisitStatus>(look.number);
    paintStatusPill(painter, {box.left() + 12, box.top() + 10, 104, 28}, status);
    drawIcon(painter, Icon::Chevron, {box.right() - 24.0, box.center().y() + 0.5}, Theme::muted);
}

void paintToggle(QPainter& painter, const QRect& rect, const Look& look) {
    const QRect box = fieldBox(rect);
    const QRectF track(box.left() + 2, box.top() + 10, 52, 28);
    const QColor off = look.hovered ? Theme::faint : QColor(0x4A, 0x59, 0x54);
    Theme::fillRounded(painter, track, 14, off);
    Theme::fillRounded(painter, track, 14, Theme::withAlpha(Theme::accent, look.level));
    const QRectF knob(track.left() + 3 + look.level * 24, track.top() + 3, 22, 22);
    Theme::fillRounded(painter, knob.translated(0, 1), 11, Theme::withAlpha(Theme::sidebarBottom, 0.2));
    Theme::fillRounded(painter, knob, 11, Theme::light);
    Theme::drawText(painter, box.adjusted(70, 3, 0, -23), QStringLiteral("Share with the client"),
                    {15, Theme::ink});
    Theme::drawText(painter, box.adjusted(70, 25, 0, -2), QStringLiteral("They see notes and hours"),
                    {13, Theme::faint});
}

void paintDiscard(QPainter& painter, const QRect& rect, const Look& look) {
    if (look.hovered)
        Theme::fillRounded(painter, rect, boxRadius, look.pressed ? Theme::hairline : Theme::inset);
    Theme::outlineRounded(painter, rect, boxRadius, Theme::hairline.darker(106));
    Theme::drawText(painter, rect, QStringLiteral("Discard"),
                    {15, look.chosen ? Theme::ink : Theme::faint, Weight::Regular, Qt::AlignCenter});
}

void paintSave(QPainter& painter, const QRect& rect, const Look& look) {
    const QColor base = look.pressed ? Theme::accentDark : Theme::accent;
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, look.hovered && !look.pressed ? base.lighter(118) : base.lighter(108));
    gradient.setColorAt(1, base);
    if (!look.pressed) {
        Theme::fillRounded(painter, rect.adjusted(0, 3, 0, 3), boxRadius,
                           Theme::withAlpha(Theme::accentDark, 0.2));
    }
    Theme::fillRounded(painter, rect, boxRadius, gradient);
    Theme::drawText(painter, rect, QStringLiteral("Save note"),
                    {15, Theme::light, Weight::Bold, Qt::AlignCenter});
}

}  // namespace tessaloom::demo
