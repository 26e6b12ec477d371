// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>

#include "core/Geometry.h"

namespace tessaloom {

/// An area in Qt's coordinates of the whole desktop, in pixels. Qt places screens in pixels, and what is on
/// them in points from their corner; `pixelsPerPoint` are those that Qt draws the screen with.
Rect inDesktopPixels(const Rect& area, QPoint screenCorner, double pixelsPerPoint);

}  // namespace tessaloom
