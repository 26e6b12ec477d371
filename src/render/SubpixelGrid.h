// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "render/FrameComposer.h"

namespace tessaloom {

/// The frame with the edges of the shown part of the recording and of the pointer moved to the nearest
/// 1/128 pixel (of the recording and of the canvas). That is about all that 8-bit pictures can show: it moves
/// no sample by more than a level per axis. A movement that has practically ended thus comes to rest, where
/// frames are equal and need not be drawn again. Idempotent; the recording's size is in pixels.
FrameComposer::Frame onSubpixelGrid(FrameComposer::Frame frame, int recordingWidth, int recordingHeight);

}  // namespace tessaloom
