// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRegion>
#include <QString>
#include <QStringList>

#include "demo-scene/Control.h"
#include "demo-scene/SceneLayout.h"
#include "demo-scene/SceneState.h"
#include "demo-scene/TextLine.h"

namespace tessaloom::demo {

/// All that a control's picture depends on besides its place. Painters read nothing else, so that a control
/// needs painting exactly when its look has changed.
struct Look {
    bool visible = true;
    bool hovered = false;
    bool pressed = false;
    bool focused = false;
    bool chosen = false;
    /// How far a fade or a slide is, 0 to 1; hours for a bar.
    double level = 0;
    int number = 0;
    QString text;
    QString detail;
    TextLine edit;
    QStringList items;

    bool operator==(const Look&) const = default;
};

Look lookOf(const SceneState& state, ControlId control);

/// The area a control paints, which its shadow or slide may make larger than its rectangle.
QRect paintedArea(const Control& control);

/// What must be painted again to get from one state's picture to the other's.
QRegion changedArea(const SceneLayout& layout, const SceneState& before, const SceneState& after);

/// The topmost control under a point that takes clicks; kind None where there is none.
ControlId controlAt(const SceneLayout& layout, const SceneState& state, QPoint point);

}  // namespace tessaloom::demo
