// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>
#include <QRegion>

#include "demo-scene/SceneLayout.h"
#include "demo-scene/SceneState.h"

namespace tessaloom::demo {

/// Paints the scene inside `region`, all but the counter.
void paintScene(QPainter& painter, const SceneLayout& layout, const SceneState& state, const QRegion& region);

}  // namespace tessaloom::demo
