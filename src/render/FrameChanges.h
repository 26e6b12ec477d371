// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>

#include "core/Geometry.h"
#include "render/ChangedArea.h"
#include "render/Renderer.h"

namespace tessaloom {

/// All that decides which pixels a frame has where.
struct FrameLook {
    const FrameComposer::Frame& frame;
    SourceContents sources;
    /// Where its texts are drawn, in canvas pixels.
    std::optional<Rect> keystroke;
    std::optional<Rect> caption;
};

/// Adds to `area`, which has the canvas's size, every pixel in which two frames may differ: all of them where
/// the recording or its background moved or changed, else the places of the overlays that did, before and
/// after.
void addChanges(const FrameLook& before, const FrameLook& after, ChangedArea& area);

}  // namespace tessaloom
