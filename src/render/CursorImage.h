// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/CursorStyle.h"
#include "core/Geometry.h"
#include "render/OverlayRaster.h"

namespace tessaloom {

/// A pointer: premultiplied pixels (more of them than points, so that it stays crisp when zoomed), its size
/// and the place of its tip in points.
struct CursorImage {
    BgraImage pixels;
    Size size;
    Point hotspot;
};

/// Names of the cursor themes to look in, best first: the user's, the desktop's default, well-known ones.
std::vector<std::string> cursorThemes();

/// The image of a style. The arrow and the hand are those of the first theme that has them, drawn here when
/// none does.
CursorImage makeCursorImage(CursorStyle style, std::span<const std::string> themes);

}  // namespace tessaloom
