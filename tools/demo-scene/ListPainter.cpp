// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>

#include "demo-scene/ControlPainter.h"
#include "demo-scene/Icons.h"
#include "demo-scene/Theme.h"

// The sidebar, the search box and the list.
namespace tessaloom::demo {

using Theme::Weight;

void paintNavigation(QPainter& painter, const QRect& rect, int index, const Look& look) {
    struct Entry {
        const char* name;
        Icon icon;
    };
    static constexpr std::array entries{Entry{"Today", Icon::Sun}, Entry{"Visits", Icon::Pin},
                                        Entry{"Clients", Icon::Person}, Entry{"Invoices", Icon::Page},
                                        Entry{"Reports", Icon::Bars}};
    const Entry& entry = entries.at(static_cast<std::size_t>(index));
    const double highlight = look.chosen ? 0.13 : look.hovered ? 0.06 : 0;
    if (highlight > 0) Theme::fillRounded(painter, rect, 10, Theme::withAlpha(Theme::light, highlight));
    if (look.chosen) {
        Theme::fillRounded(painter, QRect(rect.left(), rect.top() + 11, 4, 20), 2,
                           Theme::accent.lighter(160));
    }
    const QColor color = look.chosen ? Theme::light : Theme::sidebarText;
    drawIcon(painter, entry.icon, {rect.left() + 28.0, rect.center().y() + 0.5}, color);
    Theme::drawText(painter, rect.adjusted(54, 0, -8, 0), QLatin1String(entry.name),
                    {15, color, look.chosen ? Weight::Bold : Weight::Regular});
}

void paintGoal(QPainter& painter, const QRect& rect, const Look& look) {
    constexpr int visitsInWeek = 9;
    Theme::fillRounded(painter, rect, 14, Theme::withAlpha(Theme::light, 0.07));
    const QRect inner = rect.adjusted(18, 16, -18, -16);
    Theme::drawText(painter, {inner.left(), inner.top(), inner.width(), 20}, QStringLiteral("Weekly goal"),
                    {13, Theme::sidebarText});
    Theme::drawText(painter, {inner.left(), inner.top() + 24, inner.width(), 32},
                    QStringLiteral("%1 of %2 done").arg(look.number).arg(visitsInWeek),
                    {18, Theme::light, Weight::Bold});
    const QRectF track(inner.left(), inner.bottom() - 9, inner.width(), 8);
    Theme::fillRounded(painter, track, 4, Theme::withAlpha(Theme::light, 0.12));
    QRectF filled = track;
    filled.setWidth(track.width() * look.number / visitsInWeek);
    Theme::fillRounded(painter, filled, 4, Theme::amber);
}

void paintSearch(QPainter& painter, const QRect& rect, const Look& look) {
    Theme::fillRounded(painter, rect, 11, look.hovered ? Theme::card : Theme::inset);
    Theme::outlineRounded(painter, rect, 11, look.hovered ? Theme::faint : Theme::hairline);
    drawIcon(painter, Icon::Magnifier, {rect.left() + 25.0, rect.center().y() + 1.0}, Theme::muted);
    Theme::drawText(painter, rect.adjusted(48, 0, -80, 0), QStringLiteral("Search or run a command"),
                    {15, Theme::faint});
    const QRect hint(rect.right() - 67, rect.top() + 9, 58, 24);
    Theme::fillRounded(painter, hint, 6, Theme::hairline.lighter(104));
    Theme::drawText(painter, hint, QStringLiteral("Ctrl K"),
                    {12, Theme::muted, Weight::Regular, Qt::AlignCenter});
}

void paintTab(QPainter& painter, const QRect& rect, int index, const Look& look) {
    static constexpr std::array names{"All", "Open", "Done"};
    if (look.chosen) Theme::drawCard(painter, rect, 9, 4);
    const QColor color = look.chosen || look.hovered ? Theme::ink : Theme::muted;
    Theme::drawText(painter, rect, QLatin1String(names.at(static_cast<std::size_t>(index))),
                    {14, color, look.chosen ? Weight::Bold : Weight::Regular, Qt::AlignCenter});
}

void paintRow(QPainter& painter, const QRect& rect, const Look& look) {
    if (look.chosen) {
        Theme::fillRounded(painter, rect, 14, Theme::accentSoft);
        Theme::outlineRounded(painter, rect, 14, Theme::withAlpha(Theme::accent, 0.55), 1.5);
    } else {
        Theme::fillRounded(painter, rect, 14, Theme::card);
        Theme::outlineRounded(painter, rect, 14, look.hovered ? Theme::faint : Theme::hairline);
    }
    const QRect avatar(rect.left() + 18, rect.top() + 17, 48, 48);
    Theme::drawAvatar(painter, avatar, look.items.at(0));
    const int textLeft = avatar.right() + 17;
    const QRect pill(rect.right() - 18 - 92, rect.top() + 15, 92, 26);
    Theme::drawText(painter, {textLeft, rect.top() + 16, pill.left() - textLeft - 10, 26}, look.text,
                    {16, Theme::ink, Weight::Bold});
    Theme::drawText(painter, {textLeft, rect.top() + 43, pill.left() - textLeft + 30, 22}, look.detail,
                    {14, Theme::muted});
    paintStatusPill(painter, pill, static_cast<VisitStatus>(look.number));
    Theme::drawText(painter, {pill.left(), rect.top() + 43, pill.width() - 4, 22}, look.items.at(1),
                    {13, Theme::faint, Weight::Regular, Qt::AlignRight | Qt::AlignVCenter});
}

void paintStatusPill(QPainter& painter, const QRect& rect, VisitStatus status) {
    struct Tone {
        QColor ground;
        QColor text;
    };
    static constexpr std::array tones{
        Tone{{0x38, 0x44, 0x40}, {0xC2, 0xCE, 0xC9}}, Tone{{0x4B, 0x3A, 0x1B}, {0xF2, 0xC0, 0x6B}},
        Tone{{0x1E, 0x4A, 0x3A}, {0x7A, 0xE0, 0xB4}}, Tone{{0x23, 0x3F, 0x57}, {0x8F, 0xC6, 0xF2}}};
    const Tone& tone = tones.at(static_cast<std::size_t>(status));
    Theme::fillRounded(painter, rect, rect.height() / 2.0, tone.ground);
    Theme::drawText(painter, rect, nameOf(status), {12, tone.text, Weight::Bold, Qt::AlignCenter});
}

}  // namespace tessaloom::demo
