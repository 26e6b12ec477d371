// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <vector>

#include "demo-scene/Control.h"
#include "demo-scene/TextBox.h"

namespace tessaloom::demo {

/// Where everything lies for one size of the scene. Pixels, from the scene's top left corner.
struct SceneLayout {
    QRect sidebar;
    QRect topBar;
    QRect list;
    QRect form;
    QRect chart;
    QRect statusBar;
    QRect counterStrip;
    /// In painting order. What a small scene has no room for is left out.
    std::vector<Control> controls;

    /// `busy` puts the animated area in the chart's place.
    static SceneLayout forSize(QSize size, bool busy);

    /// An empty rectangle for a control that isn't there.
    QRect rectOf(ControlId id) const;

    /// The rectangles as [x, y, width, height] in screen pixels under the controls' names, and "counter".
    QJsonObject geometry(QPoint sceneOrigin) const;
};

/// The box of a field below its label.
QRect fieldBox(const QRect& field);
/// How a field's text fills its box.
TextBox::Shape textShapeOf(const QRect& field, int fieldIndex);

constexpr int navigationCount = 5;
constexpr int tabCount = 3;
constexpr int paletteItemCount = 5;
constexpr int paletteItemHeight = 54;

}  // namespace tessaloom::demo
