// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeyEvent>

#include "demo-scene/SceneState.h"

namespace tessaloom::demo {

/// What each key does to the scene.
void applyKey(SceneState& state, const QKeyEvent& event);

}  // namespace tessaloom::demo
