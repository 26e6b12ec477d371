// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainter>
#include <QRegion>

#include "demo-scene/SceneLayout.h"

namespace tessaloom::demo {

/// Paints all that never changes: grounds, cards, headings. What lies outside `region` may be skipped.
void paintBackground(QPainter& painter, const SceneLayout& layout, const QRegion& region);

}  // namespace tessaloom::demo
