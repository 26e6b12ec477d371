// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/BackgroundPainter.h"

#include <QLinearGradient>
#include <array>

#include "demo-scene/Icons.h"
#include "demo-scene/Theme.h"
#include "demo-scene/Visit.h"

namespace tessaloom::demo {
namespace {

using Theme::Weight;

void paintProjects(QPainter& painter, const QRect& sidebar, int top) {
    struct Project {
        const char* name;
        QColor color;
    };
    static constexpr std::array projects{
        Project{"River survey", {0x5D, 0xB3, 0xD9}}, Project{"Orchard census", {0xE2, 0xA0, 0x3F}},
        Project{"North ridge", {0xE0, 0x7A, 0x5A}}, Project{"Wetland count", {0x7F, 0xC8, 0x9B}}};
    const int left = sidebar.left() + 28;
    Theme::drawText(painter, {left, top, sidebar.width() - 40, 20}, QStringLiteral("PROJECTS"),
                    {11, Theme::withAlpha(Theme::sidebarText, 0.6), Weight::Bold});
    int y = top + 34;
    for (const Project& project : projects) {
        Theme::fillRounded(painter, QRect(left, y + 8, 10, 10), 5, project.color);
        Theme::drawText(painter, {left + 24, y, sidebar.width() - 60, 26}, QLatin1String(project.name),
                        {14, Theme::sidebarText});
        y += 36;
    }
}

void paintSidebar(QPainter& painter, const QRect& sidebar) {
    QLinearGradient gradient(sidebar.topLeft(), sidebar.bottomLeft());
    gradient.setColorAt(0, Theme::sidebarTop);
    gradient.setColorAt(1, Theme::sidebarBottom);
    painter.fillRect(sidebar, gradient);
    const QRect badge(sidebar.left() + 22, 20, 38, 38);
    Theme::fillRounded(painter, badge, 11, Theme::accent.lighter(122));
    drawIcon(painter, Icon::Leaf, badge.center() + QPointF(0.5, 0.5), Theme::light, 2);
    Theme::drawText(painter, {badge.right() + 14, badge.top(), sidebar.width() - 80, badge.height()},
                    QStringLiteral("Fieldnotes"), {20, Theme::light, Weight::Bold});
    const int projectsTop = 100 + navigationCount * 48 + 26;
    if (sidebar.height() > projectsTop + 340) paintProjects(painter, sidebar, projectsTop);
}

void paintTopBar(QPainter& painter, const QRect& bar) {
    painter.fillRect(bar, Theme::card);
    painter.fillRect(QRect(bar.left(), bar.bottom(), bar.width(), 1), Theme::hairline);
    const QRect avatar(bar.right() - 28 - 40, bar.top() + 14, 40, 40);
    Theme::drawAvatar(painter, avatar, QStringLiteral("Robin Ashe"));
    const QPointF bell(avatar.left() - 36, bar.center().y());
    drawIcon(painter, Icon::Bell, bell, Theme::muted);
    Theme::fillRounded(painter, QRectF(bell.x() + 2, bell.y() - 10, 9, 9), 4.5, Theme::amber);
    Theme::drawText(painter, {avatar.left() - 260, bar.top(), 196, bar.height()},
                    QStringLiteral("Week 24  \u00b7  June"),
                    {14, Theme::muted, Weight::Regular, Qt::AlignRight | Qt::AlignVCenter});
}

void paintListHeading(QPainter& painter, const QRect& list) {
    Theme::drawText(painter, {list.left(), list.top() - 4, list.width() - 240, 34}, QStringLiteral("Visits"),
                    {26, Theme::ink, Weight::Bold});
    Theme::drawText(painter, {list.left(), list.top() + 32, list.width() - 240, 22},
                    QStringLiteral("9 this week, 4 projects"), {14, Theme::muted});
    Theme::fillRounded(painter, QRect(list.right() + 1 - 3 * 76 - 4, list.top(), 3 * 76 + 8, 44), 12,
                       Theme::hairline.lighter(103));
}

void paintCard(QPainter& painter, const QRect& rect) {
    Theme::drawCard(painter, rect, 16, 30);
}

void paintStatusBar(QPainter& painter, const QRect& bar) {
    painter.fillRect(bar, Theme::paper);
    painter.fillRect(QRect(bar.left(), bar.top(), bar.width(), 1), Theme::hairline);
}

}  // namespace

void paintBackground(QPainter& painter, const SceneLayout& layout, const QRegion& region) {
    painter.fillRect(region.boundingRect(), Theme::paper);
    const auto paint = [&](auto paintPart, const QRect& rect, int margin = 0) {
        if (rect.isValid() && region.intersects(rect.adjusted(-margin, -margin, margin, margin))) {
            paintPart(painter, rect);
        }
    };
    constexpr int shadowMargin = 30;
    paint(paintSidebar, layout.sidebar);
    paint(paintTopBar, layout.topBar);
    paint(paintListHeading, layout.list);
    paint(paintCard, layout.form, shadowMargin);
    paint(paintCard, layout.chart, shadowMargin);
    paint(paintStatusBar, layout.statusBar);
}

}  // namespace tessaloom::demo
