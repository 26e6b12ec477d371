// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "capture/CapturePlatform.h"
#include "capture/CursorSampler.h"
#include "capture/InputEventTap.h"

namespace tessaloom {

/// A sampler at work. Where the desktop doesn't let us follow the pointer, which is logged, it has no
/// samples: a recording is worth more than what is drawn over it.
std::unique_ptr<CursorSampler> startCursorSampler(CapturePlatform& platform, double origin,
                                                  const Rect& displayFrame);

/// A tap at work; where the desktop doesn't let us listen, which is logged, it has no events.
std::unique_ptr<InputEventTap> startEventTap(CapturePlatform& platform);

}  // namespace tessaloom
