// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "export/CanvasSize.h"
#include "render/FrameComposer.h"

namespace tessaloom {

/// What a take shows at each of some source times (seconds) on a canvas, as a JSON array with an object for
/// each time. What a frame doesn't show is left out; a number that is not finite is null, in a vector as
/// anywhere.
std::string frameFacts(const FrameComposer& composer, const std::vector<double>& times, CanvasSize canvas);

}  // namespace tessaloom
