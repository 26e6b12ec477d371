// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <span>
#include <string>

#include "capture/CaptureTarget.h"
#include "media/BgraImage.h"
#include "media/PixelRect.h"

namespace tessaloom {

struct StreamConfiguration {
    ContentFilter filter;
    PixelRect
        source;  ///< in pixels relative to the filter's content; width and height are the picture's, even
    double minimumFrameInterval = 1.0 / 60.0;
};

/// New pixels for one rectangle of the picture; `x`, `y` and the view's size are even.
struct ScreenPatch {
    BgraView pixels;
    int x = 0;
    int y = 0;
};

/// One complete frame, told as what changed since the one before; the first covers the whole picture.
struct ScreenFrame {
    double hostTime = 0;  ///< HostClock seconds at which the pixels were read
    std::span<const ScreenPatch> patches;
};

/// Delivers a display's or a window's picture as it changes, without the pointer. Nothing is read while
/// nothing changes.
class ScreenStream {
  public:
    /// Both are called on the stream's own threads, one at a time; the frame's views are valid during the
    /// call.
    using FrameHandler = std::function<void(const ScreenFrame&)>;
    /// The stream ended by itself (a closed window, a lost server), for the reason given; at most once.
    using StopHandler = std::function<void(const std::string& reason)>;

    virtual ~ScreenStream() = default;

    /// Throws CaptureError or std::runtime_error when the source can't be opened. Called once.
    virtual void start(FrameHandler onFrame, StopHandler onStopped) = 0;
    /// No handler runs after it returns. Safe to call at any time, also twice.
    virtual void stop() = 0;
};

}  // namespace tessaloom
