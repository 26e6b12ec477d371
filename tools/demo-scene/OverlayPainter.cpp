// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>

#include "demo-scene/ControlPainter.h"
#include "demo-scene/Icons.h"
#include "demo-scene/TextBox.h"
#include "demo-scene/Theme.h"

// What appears over the rest, and the line at the bottom.
namespace tessaloom::demo {

using Theme::Weight;

namespace {

double eased(double level) {
    return level * level * (3 - 2 * level);
}

}  // namespace

void paintSaveState(QPainter& painter, const QRect& rect, const Look& look) {
    Theme::fillRounded(painter, QRect(rect.left() + 28, rect.center().y() - 3, 8, 8), 4,
                       look.chosen ? Theme::amber : Theme::accent);
    Theme::drawText(painter, rect.adjusted(46, 1, 0, 0),
                    look.chosen ? QStringLiteral("Unsaved changes") : QStringLiteral("All changes saved"),
                    {13, Theme::muted});
}

void paintMenu(QPainter& painter, const QRect& rect, const Look& look) {
    painter.setOpacity(eased(look.level));
    Theme::drawCard(painter, rect, 12, 24);
    painter.setOpacity(1);
}

void paintMenuItem(QPainter& painter, const QRect& rect, const Look& look) {
    painter.setOpacity(eased(look.level));
    if (look.hovered) Theme::fillRounded(painter, rect, 8, Theme::accentSoft);
    paintStatusPill(painter, {rect.left() + 8, rect.top() + 8, 104, 28},
                    static_cast<VisitStatus>(look.number));
    if (look.chosen)
        drawIcon(painter, Icon::Check, {rect.right() - 22.0, rect.center().y() + 0.5}, Theme::accent, 2.2);
    painter.setOpacity(1);
}

// As tall as its matches need.
void paintPalette(QPainter& painter, const QRect& rect, const Look& look) {
    const int emptyItems = paletteItemCount - std::max(1, look.number);
    painter.setOpacity(eased(look.level));
    Theme::drawCard(painter, rect.adjusted(0, 0, 0, -emptyItems * paletteItemHeight), 16, 56);
    if (look.number == 0) {
        Theme::drawText(painter, {rect.left() + 28, rect.top() + 74, rect.width() - 56, paletteItemHeight},
                        QStringLiteral("Nothing found"), {16, Theme::faint});
    }
    drawIcon(painter, Icon::Magnifier, {rect.left() + 32.0, rect.top() + 34.0}, Theme::accent, 2.2);
    const QRect input(rect.left() + 60, rect.top() + 8, rect.width() - 84, 50);
    if (look.edit.text().isEmpty()) {
        Theme::drawText(painter, input.adjusted(4, 0, 0, 0), QStringLiteral("Type a command or a name"),
                        {19, Theme::faint});
    }
    TextBox::draw(painter, {input, 19}, look.edit, look.focused);
    painter.fillRect(QRect(rect.left(), rect.top() + 65, rect.width(), 1), Theme::hairline);
    painter.setOpacity(1);
}

void paintPaletteItem(QPainter& painter, const QRect& rect, const Look& look) {
    painter.setOpacity(eased(look.level));
    const bool lit = look.chosen || look.hovered;
    if (lit)
        Theme::fillRounded(painter, rect.adjusted(0, 3, 0, -3), 10,
                           look.chosen ? Theme::accentSoft : Theme::inset);
    Theme::drawText(painter, rect.adjusted(18, 0, -60, 0), look.text,
                    {16, Theme::ink, look.chosen ? Weight::Bold : Weight::Regular});
    if (look.chosen)
        drawIcon(painter, Icon::Arrow, {rect.right() - 28.0, rect.center().y() + 1.0}, Theme::accent);
    painter.setOpacity(1);
}

void paintToast(QPainter& painter, const QRect& rect, const Look& look) {
    const double level = eased(look.level);
    painter.setOpacity(level);
    const QRect placed = rect.translated(0, static_cast<int>((1 - level) * 20));
    Theme::drawCard(painter, placed, 14, 36);
    Theme::fillRounded(painter, placed, 14, Theme::accentSoft);
    const QRect round(placed.left() + 16, placed.top() + 12, 30, 30);
    Theme::fillRounded(painter, round, 15, Theme::accent);
    drawIcon(painter, Icon::Check, round.center() + QPointF(0.5, 0.5), Theme::light, 2.4);
    Theme::drawText(painter, placed.adjusted(62, 0, -16, 0), look.text, {16, Theme::light, Weight::Bold});
    painter.setOpacity(1);
}

}  // namespace tessaloom::demo
