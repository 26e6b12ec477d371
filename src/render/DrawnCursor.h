// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "render/CursorImage.h"

namespace tessaloom {

/// A black arrow and a black pointing hand with white outlines, for desktops without a cursor theme.
CursorImage drawnArrow();
CursorImage drawnHand();

/// A white disc and a white circle, each pointing with its middle.
CursorImage drawnDot();
CursorImage drawnRing();

}  // namespace tessaloom
