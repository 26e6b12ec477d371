// SPDX-License-Identifier: GPL-3.0-or-later
#include "demo-scene/ScenePainter.h"

#include "demo-scene/BackgroundPainter.h"
#include "demo-scene/ControlPainter.h"
#include "demo-scene/SceneLook.h"

namespace tessaloom::demo {

void paintScene(QPainter& painter, const SceneLayout& layout, const SceneState& state,
                const QRegion& region) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setClipRegion(region);
    paintBackground(painter, layout, region);
    for (const Control& control : layout.controls) {
        if (!region.intersects(paintedArea(control))) continue;
        const Look look = lookOf(state, control.id);
        if (look.visible) paintControl(painter, control, look);
    }
}

}  // namespace tessaloom::demo
