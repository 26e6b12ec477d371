// SPDX-License-Identifier: GPL-3.0-or-later
#include "capture/DesktopPixels.h"

namespace tessaloom {

Rect inDesktopPixels(const Rect& area, QPoint screenCorner, double pixelsPerPoint) {
    return {screenCorner.x() + (area.x - screenCorner.x()) * pixelsPerPoint,
            screenCorner.y() + (area.y - screenCorner.y()) * pixelsPerPoint, area.width * pixelsPerPoint,
            area.height * pixelsPerPoint};
}

}  // namespace tessaloom
