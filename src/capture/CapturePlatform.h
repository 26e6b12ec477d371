// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSize>
#include <memory>
#include <vector>

#include "capture/DesktopScreen.h"
#include "capture/InputSources.h"
#include "capture/ScreenStream.h"
#include "capture/ShareableContent.h"
#include "capture/SourcePicker.h"
#include "capture/ThumbnailSource.h"

namespace tessaloom {

/// The desktop that recording runs on. Main thread only; what it makes lives on.
class CapturePlatform {
  public:
    virtual ~CapturePlatform() = default;

    /// Throws CaptureError::noDisplay when no display can be reached; so do the others.
    virtual ShareableContent shareableContent() = 0;
    /// The filter with its window's frame as it is now; unchanged for a display, and for a window that is
    /// gone, which a stream of it will tell.
    virtual ContentFilter withPresentFrame(const ContentFilter& filter) = 0;
    /// Reads a few pixels of what is to be recorded, so that all that takes part is awake when it has to be.
    /// False when they can't be had.
    virtual bool takePreflightPicture(const ContentFilter& filter) = 0;
    /// Whether a display's picture shows what lies beneath this program's own windows. Otherwise they are in
    /// it.
    virtual bool leavesOutOwnWindows() = 0;
    /// The screen's wallpaper, of any size; empty when the desktop doesn't tell or it can't be read.
    virtual BgraImage wallpaper(const DesktopScreen& screen) = 0;
    virtual std::unique_ptr<ScreenStream> makeScreenStream(const StreamConfiguration& configuration) = 0;
    virtual std::unique_ptr<PointerSource> makePointerSource() = 0;
    virtual std::unique_ptr<InputEventSource> makeInputEventSource() = 0;
    /// The desktop's own picker, or ours where it has none. This must outlive it.
    virtual std::unique_ptr<SourcePicker> makeSourcePicker() = 0;
    /// Pictures of these, numbered in this order, none wider or higher than `largest` pixels.
    virtual std::unique_ptr<ThumbnailSource> makeThumbnailSource(const std::vector<ContentFilter>& filters,
                                                                 QSize largest) = 0;
};

}  // namespace tessaloom
